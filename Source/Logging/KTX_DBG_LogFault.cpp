#include "KTX_DBG_LogFault.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace KTX::DBG {

void tellFault(char const* text, char const* detail) {
  std::array<char, 1024> line{};
  std::snprintf(line.data(), line.size(), "KTX_LOG: %s%s", text, detail);
  auto const isControl = [](char c) { return (c > '\0' && c < ' ') || c == '\x7f'; };
  std::replace_if(line.begin(), line.end(), isControl, '?');
  // Where this fails too, there is nobody left to tell.
  static_cast<void>(std::fprintf(stderr, "%s\n", line.data()));
  static_cast<void>(std::fflush(stderr));
}

void LogFaultC::tellOnce(char const* text, char const* detail) {
  if (!isTold.exchange(true)) {
    tellFault(text, detail);
  }
}

}  // namespace KTX::DBG
