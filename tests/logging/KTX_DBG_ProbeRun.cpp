#include "KTX_DBG_ProbeRun.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "common/KTX_TIM_TempFolder.h"

namespace KTX::DBG::TEST {

namespace {

#ifdef _WIN32

std::filesystem::path probePath(std::string const& name) {
  return std::filesystem::path(_pgmptr).parent_path() / (name + ".exe");
}

void setKtxLog(char const* settingText) {
  auto const wide = std::filesystem::u8path(settingText == nullptr ? "" : settingText).wstring();
  _wputenv_s(L"KTX_LOG", wide.c_str());
}

// The command interpreter takes off the outer quotes.
std::string commandLine(std::string const& command) {
  return '"' + command + '"';
}

int exitStatus(int result) {
  return result;
}

#else

std::filesystem::path probePath(std::string const& name) {
  return std::filesystem::read_symlink("/proc/self/exe").parent_path() / name;
}

void setKtxLog(char const* settingText) {
  if (settingText == nullptr) {
    unsetenv("KTX_LOG");  // NOLINT(concurrency-mt-unsafe): one thread
  } else {
    setenv("KTX_LOG", settingText, 1);  // NOLINT(concurrency-mt-unsafe): one thread
  }
}

std::string commandLine(std::string const& command) {
  return command;
}

int exitStatus(int result) {
  return WIFEXITED(result) ? WEXITSTATUS(result) : -1;
}

#endif

// Text written through the C library has line ends of two characters on Windows.
std::string readText(TIM::TEST::TempFolderC const& folder, char const* name) {
  std::string text = folder.read(name);
  text.erase(std::remove(text.begin(), text.end(), '\r'), text.end());
  return text;
}

ProbeRunC runProgram(std::string const& name,
                     char const* settingText,
                     std::string const& arguments) {
  TIM::TEST::TempFolderC const folder;
  setKtxLog(settingText);
  std::string const command = '"' + probePath(name).string() + "\" " + arguments + " > \"" +
                              (folder.path() / "output").string() + "\" 2> \"" +
                              (folder.path() / "errors").string() + '"';
  ProbeRunC run;
  // NOLINTNEXTLINE(concurrency-mt-unsafe): one thread
  run.status = exitStatus(std::system(commandLine(command).c_str()));
  run.output = readText(folder, "output");
  run.errors = readText(folder, "errors");
  return run;
}

}  // namespace

ProbeRunC runProbe(char const* settingText, std::string const& arguments) {
  return runProgram("logging_probe", settingText, arguments);
}

ProbeRunC runProbeWithSetting(char const* settingText, std::string const& arguments) {
  return runProgram("logging_probe_setting", settingText, arguments);
}

}  // namespace KTX::DBG::TEST
