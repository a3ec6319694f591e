#ifndef KTX_RCV_RAWFIELD_H
#define KTX_RCV_RAWFIELD_H

#include <cstdint>

namespace KTX::RCV {

/// One field of a message as it stands there, for reports.
struct RawFieldC {
  char const* name;    ///< static text
  std::int64_t value;  ///< as it stands in the message
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_RAWFIELD_H
