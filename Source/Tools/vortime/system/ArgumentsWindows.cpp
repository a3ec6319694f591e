#include "system/Arguments.h"

#include <windows.h>

#include <shellapi.h>

#include "system/FileName.h"

namespace KTX::VORTIME {

std::vector<std::string> commandLineArguments(int /*count*/, char const* const* /*values*/) {
  // The C runtime's own arguments went through the ANSI code page.
  std::vector<std::string> arguments;
  int count = 0;
  wchar_t** const values = ::CommandLineToArgvW(::GetCommandLineW(), &count);
  for (int i = 1; values != nullptr && i < count; ++i) {
    arguments.push_back(narrowText(values[i]));
  }
  ::LocalFree(values);
  return arguments;
}

}  // namespace KTX::VORTIME
