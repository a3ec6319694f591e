#ifndef KTX_RCV_HOSTTIME_H
#define KTX_RCV_HOSTTIME_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace KTX::RCV {

/// The host's time of arrival that a logger wrote on a line, and where the receiver's text stands.
struct HostTimeC {
  std::int64_t unixMs = 0;  ///< of the years 1900 to 9999
  std::size_t begin = 0;    ///< of the receiver's text in the line
  std::size_t end = 0;      ///< behind the receiver's text
};

/// Reads a line, without its line end, in one of two forms: "2014-08-01T00:00:00.124000Z TEXT" or
/// "NMEA,TEXT,1699400577561" with milliseconds since 1970-01-01. False, and hostTime as it was, for
/// any other line.
bool readHostTime(std::string_view line, HostTimeC& hostTime);

}  // namespace KTX::RCV

#endif  // KTX_RCV_HOSTTIME_H
