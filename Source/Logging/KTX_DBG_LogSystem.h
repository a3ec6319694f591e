#ifndef KTX_DBG_LOGSYSTEM_H
#define KTX_DBG_LOGSYSTEM_H

#include <string>
#include <string_view>

namespace KTX::DBG {

/// Value of an environment variable in UTF-8 (on POSIX: as it is); empty where it is not set.
std::string environmentText(char const* name);

/// The setting that the program brings along, a text that it exports as KTX_LOG_DEFAULT; empty
/// where it exports none.
std::string programSetting();

/// Writes text to standard error, where that can be done.
void writeToStandardError(std::string_view text);

/// Keeps this library loaded until the process ends, because its log stays open until then.
void stayLoaded();

/// Has before called before each fork() of the process, and after in both processes; never on
/// Windows. For a library that stays loaded.
void watchForks(void (*before)(), void (*after)());

}  // namespace KTX::DBG

#endif  // KTX_DBG_LOGSYSTEM_H
