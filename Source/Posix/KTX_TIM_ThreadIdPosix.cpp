#include "support/KTX_TIM_ThreadId.h"

#include <atomic>

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

// The system's own id has 64 bits here, and neither half of it is unique.
std::uint32_t currentThreadId32() {
  thread_local std::uint32_t id = 0;
  if (id == 0) {
    id = nextThreadId();
  }
  return id;
}

}  // namespace KTX::TIM
