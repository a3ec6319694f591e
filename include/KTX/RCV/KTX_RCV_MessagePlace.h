#ifndef KTX_RCV_MESSAGEPLACE_H
#define KTX_RCV_MESSAGEPLACE_H

#include <cstdint>

namespace KTX::RCV {

/// Where a message stands in the input, and when the host received it.
struct MessagePlaceC {
  std::uint64_t offset = 0;     ///< bytes from the start of the input
  std::uint64_t line = 1;       ///< from 1
  bool hasHostTime = false;     ///< hostUnixMs means something
  std::int64_t hostUnixMs = 0;  ///< arrival by the host's clock, ms since 1970-01-01 UTC
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_MESSAGEPLACE_H
