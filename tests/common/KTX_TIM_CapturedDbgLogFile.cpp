// The channel class as unit tests see it: each line goes to the capture that is alive.
#include <cstdarg>
#include <cstdio>
#include <memory>
#include <vector>

#include "KTX/DBG/KTX_DBG_DbgLogFile.h"
#include "common/KTX_TIM_LogCapture.h"

namespace KTX::DBG {

using TIM::TEST::LogCaptureC;

class LogChannelC {
 public:
  std::string name;
};

namespace {

KTX_DBG_PRINTF(1, 0)
std::string formatted(char const* format, va_list arguments) {
  va_list measured;
  va_copy(measured, arguments);
  int const length = std::vsnprintf(nullptr, 0, format, measured);
  va_end(measured);
  if (length < 0) {
    return "(this line cannot be formatted)";
  }
  std::vector<char> buffer(static_cast<std::size_t>(length) + 1);
  std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
  return std::string(buffer.data(), static_cast<std::size_t>(length));
}

}  // namespace

DbgLogFileC::DbgLogFileC(std::string const& channelName) : channel(nullptr) {
  auto owned = std::make_unique<LogChannelC>(LogChannelC{channelName});
  LogCaptureC::countBuilt(channelName);
  channel = owned.release();
}

DbgLogFileC::~DbgLogFileC() {
  LogCaptureC::countDestroyed(channel->name);
  delete channel;
}

bool DbgLogFileC::isLevelEnabled(std::int32_t level) const {
  return LogCaptureC::isEnabled(channel->name, level);
}

void DbgLogFileC::printLine(std::int32_t level, char const* format, ...) {
  if (!isLevelEnabled(level)) {
    LogCaptureC::countUnasked();
    return;
  }
  va_list arguments;
  va_start(arguments, format);
  std::string const text = formatted(format, arguments);
  va_end(arguments);
  LogCaptureC::record({channel->name, level, format, text, false});
}

void DbgLogFileC::writeText(char const* text) {
  LogCaptureC::record({channel->name, 0, text, text, true});
}

}  // namespace KTX::DBG
