#include "Posix/KTX_TIM_ZoneSources.h"

#include <cstdlib>
#include <ctime>

namespace KTX::TIM {

namespace {

// Like the C library's own time functions, this needs an environment that nobody changes meanwhile.
char const* environmentValue(char const* name) {
  return std::getenv(name);  // NOLINT(concurrency-mt-unsafe) see above
}

}  // namespace

ZoneSourcesC currentZoneSources() {
  char const* const folder = environmentValue("TZDIR");
  std::timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  return {environmentValue("TZ"),
          folder != nullptr && *folder != '\0' ? folder : "/usr/share/zoneinfo", "/etc/localtime",
          now.tv_sec};
}

}  // namespace KTX::TIM
