#include "readers/HostTime.h"

#include "readers/CivilTime.h"
#include "readers/IsoTime.h"
#include "readers/TextNumber.h"

namespace KTX::VORTIME {
namespace {

constexpr std::string_view TAG = "NMEA,";
constexpr std::int64_t NS_PER_MS = 1000000;
constexpr std::int64_t MAX_UNIX_MS = 253402300799999;  // 9999-12-31T23:59:59.999

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
  // Times before 1970 are cut towards it; no host clock reads them.
  hostTime = HostTimeC{nanosecondsSince1970(time) / NS_PER_MS, at + 1, line.size()};
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
  if (!readDigits(line.substr(comma + 1, last - comma - 1), unixMs) || unixMs > MAX_UNIX_MS) {
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

}  // namespace KTX::VORTIME
