#ifndef KTX_VORTIME_MESSAGEPLACE_H
#define KTX_VORTIME_MESSAGEPLACE_H

#include <cstdint>

namespace KTX::VORTIME {

/// Where a message stands in the input, and when the host received it.
struct MessagePlaceC {
  std::uint64_t offset = 0;  ///< bytes from the start of the input
  std::uint64_t line = 1;
  bool hasHostTime = false;
  std::int64_t hostUnixMs = 0;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_MESSAGEPLACE_H
