#ifndef KTX_DBG_LOGCHANNEL_H
#define KTX_DBG_LOGCHANNEL_H

#include <cstdarg>
#include <cstdint>
#include <string>

#include "KTX/DBG/KTX_DBG_Api.h"
#include "KTX_DBG_LogFault.h"
#include "KTX_DBG_LogOutput.h"

namespace KTX::DBG {

/// One named channel with its threshold, shared by all handles of that name. Thread-safe; no member
/// but the constructor throws.
class LogChannelC {
 public:
  /// channelThreshold may be LogSettingsC::OFF. The output must outlive the channel.
  LogChannelC(std::string const& channelName, std::int64_t channelThreshold, LogOutputC& logOutput);

  bool isEnabled(std::int32_t level) const { return level >= threshold; }

  /// Writes one line, formatted as by vprintf, without a look at the threshold. Where that fails,
  /// the line holds the format, and standard error is told of the first such line.
  KTX_DBG_PRINTF(3, 0) void print(std::int32_t level, char const* formatText, va_list arguments);

  /// Writes one line, unless the channel is off.
  void writeText(char const* text);

 private:
  std::string const name;
  std::int64_t const threshold;
  LogOutputC& output;
  LogFaultC formatFault;
};

}  // namespace KTX::DBG

#endif  // KTX_DBG_LOGCHANNEL_H
