#include "Areas.h"
#include "Check.h"

int main() {
  useGlobals();
  useValues();
  useCalendar();
  useLeapSeconds();
  useClocks();
  usePresent();
  useZones();
  useLocks();
  useLogging();
  return finishChecks();
}
