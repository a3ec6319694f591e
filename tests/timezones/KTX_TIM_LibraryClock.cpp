#include "timezones/KTX_TIM_LibraryClock.h"

#include <cstdlib>
#include <ctime>

namespace KTX::TIM::TEST {

namespace {

void setZone(char const* zone) {
  if (zone == nullptr) {
    unsetenv("TZ");  // NOLINT(concurrency-mt-unsafe) one thread, as the class asks for
  } else {
    setenv("TZ", zone, 1);  // NOLINT(concurrency-mt-unsafe) one thread, as the class asks for
  }
  tzset();
}

}  // namespace

EnvironmentZoneC::EnvironmentZoneC(char const* zone) {
  char const* const held = std::getenv("TZ");  // NOLINT(concurrency-mt-unsafe) see above
  if (held != nullptr) {
    previous = held;
  }
  setZone(zone);
}

EnvironmentZoneC::~EnvironmentZoneC() {
  setZone(previous ? previous->c_str() : nullptr);
}

std::int64_t libraryOffsetSeconds(std::int64_t utc) {
  std::time_t const time = utc;
  std::tm fields{};
  localtime_r(&time, &fields);
  return fields.tm_gmtoff;
}

}  // namespace KTX::TIM::TEST
