#include "KTX_DBG_LogSystem.h"

#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>

namespace KTX::DBG {

std::string environmentText(char const* name) {
  char const* const value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): read once
  return value == nullptr ? std::string() : std::string(value);
}

std::string programSetting() {
  void const* const text = dlsym(RTLD_DEFAULT, "KTX_LOG_DEFAULT");
  return text == nullptr ? std::string() : std::string(static_cast<char const*>(text));
}

void stayLoaded() {}  // the link option -z nodelete does it

}  // namespace KTX::DBG
