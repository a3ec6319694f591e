#ifndef KTX_DBG_LOGSETTINGS_H
#define KTX_DBG_LOGSETTINGS_H

#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <string>

namespace KTX::DBG {

/// What the environment variable KTX_LOG asks for; as built, what holds without it.
class LogSettingsC {
 public:
  /// Above every level that a caller can name.
  static constexpr std::int64_t OFF = std::numeric_limits<std::int64_t>::max();

  /// Lowest level that the channel writes, or OFF.
  std::int64_t thresholdOf(std::string const& channelName) const;

  std::map<std::string, std::int64_t> thresholds;
  std::int64_t defaultThreshold = 6;
  std::string file;  // UTF-8; empty for none
  std::size_t fileBytes =
      std::size_t{10} * 1024 * 1024;  // a file that would grow beyond is put aside
  std::size_t fileCount = 4;          // with those put aside
  bool isToStandardError = true;
};

/// Reads a setting such as "Time=3,*=6;file=vortime.log". False where anything in it is wrong: then
/// fault names it, and settings keep their value.
bool parseLogSettings(std::string const& text, LogSettingsC& settings, std::string& fault);

}  // namespace KTX::DBG

#endif  // KTX_DBG_LOGSETTINGS_H
