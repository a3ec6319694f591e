#ifndef KTX_DBG_LOGOUTPUT_H
#define KTX_DBG_LOGOUTPUT_H

#include <memory>
#include <string>
#include <string_view>

#include "KTX_DBG_LogSettings.h"

namespace KTX::DBG {

/// Writes finished lines, each with time, thread, channel and level in front, to the file and to
/// standard error. What cannot be written is lost; the first loss is told on standard error.
/// Thread-safe.
class LogOutputC {
 public:
  explicit LogOutputC(LogSettingsC const& settings);
  ~LogOutputC();
  LogOutputC(LogOutputC const&) = delete;
  LogOutputC& operator=(LogOutputC const&) = delete;

  /// Opens the file now, rather than for the first line. False where that fails: then fault says
  /// why.
  bool openFile(std::string& fault);

  /// One line end at the end of text is left out: the line gets its own. Throws nothing.
  void writeLine(std::string_view channelName, std::string_view level, std::string_view text);

  /// While it is locked no other thread writes.
  void lock();
  void unlock();

 private:
  class SinksC;

  std::unique_ptr<SinksC> sinks;
};

}  // namespace KTX::DBG

#endif  // KTX_DBG_LOGOUTPUT_H
