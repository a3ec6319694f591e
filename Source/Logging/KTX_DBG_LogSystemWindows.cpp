#include "KTX_DBG_LogSystem.h"

#include <windows.h>

#include <cstdio>

namespace KTX::DBG {

namespace {

std::string toUtf8(std::wstring const& wide) {
  auto const wideSize = static_cast<int>(wide.size());
  int const size =
      WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideSize, nullptr, 0, nullptr, nullptr);
  std::string narrow(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide.data(), wideSize, narrow.data(), size, nullptr, nullptr);
  return narrow;
}

}  // namespace

std::string environmentText(char const* name) {
  // Not getenv: the narrow environment has lost what the code page lacks.
  std::wstring const wideName(name, name + std::char_traits<char>::length(name));
  DWORD const size = GetEnvironmentVariableW(wideName.c_str(), nullptr, 0);
  std::wstring value(size, L'\0');
  value.resize(GetEnvironmentVariableW(wideName.c_str(), value.data(), size));
  return toUtf8(value);
}

std::string programSetting() {
  FARPROC const text = GetProcAddress(GetModuleHandleW(nullptr), "KTX_LOG_DEFAULT");
  return text == nullptr ? std::string() : std::string(reinterpret_cast<char const*>(text));
}

void writeToStandardError(std::string_view text) {
  // Where this fails, there is nobody left to tell.
  static_cast<void>(std::fwrite(text.data(), 1, text.size(), stderr));
  static_cast<void>(std::fflush(stderr));
}

void stayLoaded() {
  HMODULE module = nullptr;
  GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_PIN | GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS,
                     reinterpret_cast<LPCWSTR>(&stayLoaded), &module);
}

void watchForks(void (* /*before*/)(), void (* /*after*/)()) {}

}  // namespace KTX::DBG
