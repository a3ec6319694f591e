#ifndef KTX_VORTIME_SIGN_H
#define KTX_VORTIME_SIGN_H

#include <cstdint>

namespace KTX::VORTIME {

/// Signs that a message may be wrong although its form is right; bits of a mask. The tool warns of
/// them, and leaves the message out with --strict.
enum SignE : std::uint32_t {
  SIGN_NONE = 0,
  SIGN_NO_CHECKSUM = 1U << 0,      ///< a stream without checksums
  SIGN_NO_FIX = 1U << 1,           ///< the receiver tells that it has no fix
  SIGN_NO_ACCURACY = 1U << 2,      ///< the receiver does not know its accuracy
  SIGN_LEAP_UNKNOWN = 1U << 3,     ///< the receiver marks its leap second count as not valid
  SIGN_WEEK_ROLLOVER = 1U << 4,    ///< a multiple of 1024 weeks away from the reference
  SIGN_TIME_STEP = 1U << 5,        ///< does not continue the observation before
  SIGN_LEAP_COUNT = 1U << 6,       ///< another leap second count than the one in force
  SIGN_LEAP_WEEK = 1U << 7,        ///< a leap second week that is off by a multiple of 256
  SIGN_LEAP_DAY = 1U << 8,         ///< a leap second day that ends no month
  SIGN_LEAP_SYSTEM = 1U << 9,      ///< a count that is none of GPS
  SIGN_HOST_TIME_BACK = 1U << 10,  ///< the host's clock ran back
  SIGN_BURST = 1U << 11            ///< came at once with an earlier one, which must have waited
};

constexpr std::uint32_t SIGN_COUNT = 12;

/// The name of one sign in reports, such as "week-rollover". Static text.
char const* signName(SignE sign);

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_SIGN_H
