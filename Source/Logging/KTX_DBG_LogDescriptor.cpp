#include "KTX_DBG_LogDescriptor.h"

#include <cerrno>
#include <csignal>
#include <ctime>
#include <unistd.h>

namespace KTX::DBG {

namespace {

/// Keeps SIGPIPE from the calling thread while it exists.
class BrokenPipeGuardC {
 public:
  BrokenPipeGuardC() {
    sigemptyset(&brokenPipe);
    sigaddset(&brokenPipe, SIGPIPE);
    sigset_t pending;
    sigemptyset(&pending);
    sigpending(&pending);
    wasPending = sigismember(&pending, SIGPIPE) == 1;
    pthread_sigmask(SIG_BLOCK, &brokenPipe, &previous);
  }
  ~BrokenPipeGuardC() { pthread_sigmask(SIG_SETMASK, &previous, nullptr); }
  BrokenPipeGuardC(BrokenPipeGuardC const&) = delete;
  BrokenPipeGuardC& operator=(BrokenPipeGuardC const&) = delete;

  /// Takes away the signal that a write has raised; one that the program waits for stays.
  void discard() const {
    timespec const atOnce{};
    while (!wasPending && sigtimedwait(&brokenPipe, nullptr, &atOnce) < 0 && errno == EINTR) {
    }
  }

 private:
  sigset_t brokenPipe{};
  sigset_t previous{};
  bool wasPending = false;
};

}  // namespace

int writeToDescriptor(int descriptor, std::string_view text) {
  BrokenPipeGuardC const guard;
  while (!text.empty()) {
    ssize_t const count = write(descriptor, text.data(), text.size());
    if (count >= 0) {
      text.remove_prefix(static_cast<std::size_t>(count));
    } else if (int const error = errno; error == EPIPE) {
      guard.discard();
      return error;
    } else if (error != EINTR) {
      return error;
    }
  }
  return 0;
}

}  // namespace KTX::DBG
