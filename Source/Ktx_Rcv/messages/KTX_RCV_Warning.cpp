#include "KTX/RCV/KTX_RCV_Warning.h"

namespace KTX::RCV {

char const* warningName(WarningE warning) {
  static constexpr char const* NAMES[] = {
      "no-checksum", "no-fix",    "no-accuracy", "leap-unknown", "week-rollover",  "time-step",
      "leap-count",  "leap-week", "leap-day",    "leap-system",  "host-time-back", "burst"};
  static_assert(sizeof(NAMES) / sizeof(NAMES[0]) == WARNING_COUNT, "one name a warning");
  for (std::uint32_t i = 0; i < WARNING_COUNT; ++i) {
    if (warning == (1U << i)) {
      return NAMES[i];
    }
  }
  return "none";
}

}  // namespace KTX::RCV
