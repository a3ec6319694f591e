#include "system/Interrupt.h"

#include <csignal>

namespace KTX::VORTIME {
namespace {

volatile std::sig_atomic_t requested = 0;

extern "C" void noteRequest(int signalNumber) {
  requested = 1;
  std::signal(signalNumber, SIG_DFL);
}

void handle(int signalNumber, void (*handler)(int)) {
#if defined(_WIN32)
  std::signal(signalNumber, handler);
#else
  // Without restarting, so that a read that waits for more comes back.
  struct sigaction action {};
  action.sa_handler = handler;  // NOLINT(cppcoreguidelines-pro-type-union-access): the C interface
  sigemptyset(&action.sa_mask);
  sigaction(signalNumber, &action, nullptr);
#endif
}

}  // namespace

InterruptC::InterruptC() {
  requested = 0;
  handle(SIGINT, noteRequest);
  handle(SIGTERM, noteRequest);
}

InterruptC::~InterruptC() {
  std::signal(SIGINT, SIG_DFL);
  std::signal(SIGTERM, SIG_DFL);
}

bool InterruptC::isRequested() {
  return requested != 0;
}

}  // namespace KTX::VORTIME
