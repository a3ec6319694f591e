#include "system/StandardStreams.h"

#include <csignal>
#include <cstdio>
#include <fcntl.h>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

#include "system/VisibleText.h"

namespace KTX::VORTIME {
namespace {

constexpr int STANDARD_OUTPUT = 1;

#if !defined(_WIN32)
// A stream that was closed at the start keeps its number, so that no file gets it: reading the one
// fails, and what the other should show goes nowhere.
void holdClosedStreams() {
  for (int descriptor = 0; descriptor <= STANDARD_ERROR; ++descriptor) {
    if (::fcntl(descriptor, F_GETFD) < 0) {
      ::open("/dev/null", O_WRONLY);
    }
  }
}
#endif

}  // namespace

int reserveStandardOutput() {
  std::fflush(stdout);
#if defined(_WIN32)
  int const results = ::_dup(STANDARD_OUTPUT);
  ::_setmode(results, _O_BINARY);
  ::_dup2(STANDARD_ERROR, STANDARD_OUTPUT);
#else
  std::signal(SIGPIPE, SIG_IGN);
  int const results = ::fcntl(STANDARD_OUTPUT, F_DUPFD_CLOEXEC, 3);
  holdClosedStreams();
  ::dup2(STANDARD_ERROR, STANDARD_OUTPUT);
#endif
  return results;
}

bool isTerminal(int descriptor) {
#if defined(_WIN32)
  return ::_isatty(descriptor) != 0;
#else
  return ::isatty(descriptor) != 0;
#endif
}

void printError(std::string_view text) {
  std::string line = "vortime: ";
  appendVisible(line, text);
  line += '\n';
  std::fputs(line.c_str(), stderr);
}

}  // namespace KTX::VORTIME
