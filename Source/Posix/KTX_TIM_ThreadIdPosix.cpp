#include "support/KTX_TIM_ThreadId.h"

#include <atomic>
#include <sys/syscall.h>
#include <unistd.h>

namespace KTX::TIM {

namespace {

std::uint32_t nextThreadId() {
  static std::atomic<std::uint32_t> last{0};
  std::uint32_t id = 0;
  while (id == 0) {
    id = ++last;
  }
  return id;
}

}  // namespace

// Counted: the system's own id would cost a call of the system each time, and a kept one would be
// wrong in the child of a fork().
std::uint32_t currentThreadId32() {
  thread_local std::uint32_t id = 0;
  if (id == 0) {
    id = nextThreadId();
  }
  return id;
}

std::uint32_t currentSystemThreadId() {
  return static_cast<std::uint32_t>(syscall(SYS_gettid));
}

}  // namespace KTX::TIM
