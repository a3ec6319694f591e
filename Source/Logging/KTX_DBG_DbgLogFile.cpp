#include "KTX/DBG/KTX_DBG_DbgLogFile.h"

#include <cstdarg>

#include "KTX_DBG_Log.h"
#include "KTX_DBG_LogChannel.h"

namespace KTX::DBG {

DbgLogFileC::DbgLogFileC(std::string const& channelName)
    : channel(&processLog().channel(channelName)) {}

DbgLogFileC::~DbgLogFileC() = default;

bool DbgLogFileC::isLevelEnabled(std::int32_t level) const {
  return channel->isEnabled(level);
}

void DbgLogFileC::printLine(std::int32_t level, char const* format, ...) {
  if (!channel->isEnabled(level)) {
    return;
  }
  va_list arguments;
  va_start(arguments, format);
  channel->print(level, format, arguments);
  va_end(arguments);
}

void DbgLogFileC::writeText(char const* text) {
  channel->writeText(text);
}

}  // namespace KTX::DBG
