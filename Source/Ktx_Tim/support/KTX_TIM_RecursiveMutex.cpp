#include "KTX/TIM/KTX_TIM_RecursiveMutex.h"

#include <chrono>

namespace KTX::TIM {

namespace {

// How long a thread waits at most before it looks by itself whether the lock is free.
constexpr std::chrono::milliseconds LONGEST_SLEEP(1);

}  // namespace

void RecursiveMutexC::wait(std::uintptr_t self) {
  std::unique_lock<std::mutex> guard(gate);
  ++waiters;
  while (!tryTake(self)) {
    freed.wait_for(guard, LONGEST_SLEEP);
  }
  --waiters;
}

// Releases with the gate held: whoever waits cannot go on, and destroy the lock, before it is left.
void RecursiveMutexC::releaseToWaiter() {
  std::lock_guard<std::mutex> const guard(gate);
  owner.store(0, std::memory_order_release);
  freed.notify_one();
}

}  // namespace KTX::TIM
