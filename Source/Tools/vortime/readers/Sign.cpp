#include "readers/Sign.h"

namespace KTX::VORTIME {

char const* signName(SignE sign) {
  static constexpr char const* NAMES[] = {
      "no-checksum", "no-fix",    "no-accuracy", "leap-unknown", "week-rollover",  "time-step",
      "leap-count",  "leap-week", "leap-day",    "leap-system",  "host-time-back", "burst"};
  static_assert(sizeof(NAMES) / sizeof(NAMES[0]) == SIGN_COUNT, "one name a sign");
  for (std::uint32_t i = 0; i < SIGN_COUNT; ++i) {
    if (sign == (1U << i)) {
      return NAMES[i];
    }
  }
  return "none";
}

}  // namespace KTX::VORTIME
