#ifndef KTX_DBG_LOG_H
#define KTX_DBG_LOG_H

#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "KTX_DBG_LogChannel.h"
#include "KTX_DBG_LogOutput.h"
#include "KTX_DBG_LogSettings.h"

namespace KTX::DBG {

/// The settings, the output and all channels. Thread-safe.
class LogC {
 public:
  /// Takes a setting as of KTX_LOG. Where it is wrong, or its file cannot be opened, one line on
  /// standard error says so and the defaults hold.
  explicit LogC(std::string const& settingText);
  LogC(LogC const&) = delete;
  LogC& operator=(LogC const&) = delete;

  /// The channel of this name, made on first use; it lives as long as the log.
  LogChannelC& channel(std::string const& name);

  /// While it is locked no other thread writes a line or makes a channel.
  void lock();
  void unlock();

 private:
  bool setUp(std::string const& settingText, std::string& fault);

  LogSettingsC settings;
  std::unique_ptr<LogOutputC> output;
  std::mutex mutex;
  std::map<std::string, LogChannelC> channels;
};

/// The log of the process. It is never destroyed, so that channels serve while the process ends.
LogC& processLog();

}  // namespace KTX::DBG

#endif  // KTX_DBG_LOG_H
