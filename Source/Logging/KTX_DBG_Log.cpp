#include "KTX_DBG_Log.h"

#include "KTX_DBG_LogFault.h"
#include "KTX_DBG_LogSystem.h"

namespace KTX::DBG {

LogC::LogC(std::string const& settingText) {
  std::string fault;
  if (!setUp(settingText, fault)) {
    tellFault("the default is used (level 6 of every channel to standard error): ", fault.c_str());
    settings = LogSettingsC();
    output = std::make_unique<LogOutputC>(settings);
  }
}

LogChannelC& LogC::channel(std::string const& name) {
  std::lock_guard<std::mutex> const guard(mutex);
  auto const found = channels.find(name);
  if (found != channels.end()) {
    return found->second;
  }
  return channels.try_emplace(name, name, settings.thresholdOf(name), *output).first->second;
}

void LogC::lock() {
  mutex.lock();
  output->lock();
}

void LogC::unlock() {
  output->unlock();
  mutex.unlock();
}

bool LogC::setUp(std::string const& settingText, std::string& fault) {
  if (!parseLogSettings(settingText, settings, fault)) {
    return false;
  }
  output = std::make_unique<LogOutputC>(settings);
  return output->openFile(fault);
}

LogC& processLog() {
  static LogC& log = []() -> LogC& {
    stayLoaded();
    watchForks([] { processLog().lock(); }, [] { processLog().unlock(); });
    std::string const setting = environmentText("KTX_LOG");
    return *new LogC(setting.empty() ? programSetting() : setting);
  }();
  return log;
}

}  // namespace KTX::DBG
