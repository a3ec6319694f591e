#include "KTX_DBG_LogSystem.h"

#include <cstdlib>
#include <dlfcn.h>
#include <pthread.h>
#include <unistd.h>

#include "KTX_DBG_LogDescriptor.h"

namespace KTX::DBG {

std::string environmentText(char const* name) {
  char const* const value = std::getenv(name);  // NOLINT(concurrency-mt-unsafe): read once
  return value == nullptr ? std::string() : std::string(value);
}

std::string programSetting() {
  void const* const text = dlsym(RTLD_DEFAULT, "KTX_LOG_DEFAULT");
  return text == nullptr ? std::string() : std::string(static_cast<char const*>(text));
}

void writeToStandardError(std::string_view text) {
  // Where this fails, there is nobody left to tell.
  static_cast<void>(writeToDescriptor(STDERR_FILENO, text));
}

void stayLoaded() {}  // the link option -z nodelete does it

void watchForks(void (*before)(), void (*after)()) {
  pthread_atfork(before, after, after);
}

}  // namespace KTX::DBG
