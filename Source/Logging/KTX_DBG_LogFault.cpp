#include "KTX_DBG_LogFault.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "KTX_DBG_LogSystem.h"

namespace KTX::DBG {

void tellFault(char const* text, char const* detail) {
  std::array<char, 1024> line{};
  std::snprintf(line.data(), line.size(), "KTX_LOG: %s%s", text, detail);
  auto const isControl = [](char c) { return (c > '\0' && c < ' ') || c == '\x7f'; };
  std::replace_if(line.begin(), line.end(), isControl, '?');
  std::size_t const length = std::strlen(line.data());
  line[length] = '\n';  // in the place of the terminator
  writeToStandardError({line.data(), length + 1});
}

void LogFaultC::tellOnce(char const* text, char const* detail) {
  if (!isTold.exchange(true)) {
    tellFault(text, detail);
  }
}

}  // namespace KTX::DBG
