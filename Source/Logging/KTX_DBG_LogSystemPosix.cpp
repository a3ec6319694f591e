#include "KTX_DBG_LogSystem.h"

#include <cstdio>
#include <cstdlib>

namespace KTX::DBG {

std::string environmentText(char const* name) {
  char const* const value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): read once
  return value == nullptr ? std::string() : std::string(value);
}

void stayLoaded() {}  // the link option -z nodelete does it

}  // namespace KTX::DBG
