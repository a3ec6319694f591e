#include "readers/KTX_RCV_HostTime.h"

#include "KTX/RCV/KTX_RCV_CivilTime.h"
#include "KTX/RCV/KTX_RCV_IsoTime.h"
#include "KTX/RCV/KTX_RCV_TextNumber.h"

namespace KTX::RCV {
namespace {

constexpr std::string_view TAG = "NMEA,";
constexpr std::int32_t NS_PER_MS = 1000000;

bool readIsoPrefix(std::string_view line, HostTimeC& hostTime) {
  CivilTimeC time;
  std::size_t at = readIsoTime(line, time);
  if (at == 0) {
    return false;
  }
  if (at < line.size() && line[at] == 'Z') {
    ++at;
  }
  if (at >= line.size() || (line[at] != ' ' && line[at] != '\t')) {
    return false;
  }
  // A clock that counts milliseconds shows the last one that is over.
  std::int64_t const unixMs = secondsSince1970(time) * 1000 + time.nanosecond / NS_PER_MS;
  hostTime = HostTimeC{unixMs, at + 1, line.size()};
  return true;
}

bool readTagged(std::string_view line, HostTimeC& hostTime) {
  std::size_t const comma = line.rfind(',');
  std::size_t last = line.size();
  if (last > 0 && line[last - 1] == '\r') {
    --last;
  }
  if (comma == std::string_view::npos || comma < TAG.size() || comma >= last) {
    return false;
  }
  std::int64_t unixMs = 0;
  if (!readDigits(line.substr(comma + 1, last - comma - 1), unixMs) ||
      unixMs > LAST_CIVIL_UNIX_MS) {
    return false;
  }
  hostTime = HostTimeC{unixMs, TAG.size(), comma};
  return true;
}

}  // namespace

bool readHostTime(std::string_view line, HostTimeC& hostTime) {
  if (line.substr(0, TAG.size()) == TAG) {
    return readTagged(line, hostTime);
  }
  return readIsoPrefix(line, hostTime);
}

}  // namespace KTX::RCV
