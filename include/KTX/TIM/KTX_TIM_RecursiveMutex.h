#ifndef KTX_TIM_RECURSIVEMUTEX_H
#define KTX_TIM_RECURSIVEMUTEX_H

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace KTX::TIM {

/// What Mutex is made of: a recursive lock that costs one interlocked instruction for lock and
/// unlock together while no other thread wants it. A thread that has to wait does so in the kernel.
/// It may be destroyed as soon as no thread holds it or waits for it.
class RecursiveMutexC {
 public:
  RecursiveMutexC() = default;
  RecursiveMutexC(RecursiveMutexC const&) = delete;
  RecursiveMutexC& operator=(RecursiveMutexC const&) = delete;

  /// self tells the calling thread from every other living one and is not 0.
  void lockAs(std::uintptr_t self) {
    if (owner.load(std::memory_order_relaxed) == self) {
      ++reentries;
    } else if (!tryTake(self)) {
      wait(self);
    }
  }

  /// By the thread that holds it.
  void unlock() {
    if (reentries > 0) {
      --reentries;
      return;
    }
    if (waiters.load(std::memory_order_relaxed) > 0) {
      releaseToWaiter();
    } else {
      // A thread that begins to wait at this moment is not woken; it looks again by itself. A
      // second interlocked instruction, which would see it, costs as much as the first.
      owner.store(0, std::memory_order_release);
    }
  }

 private:
  bool tryTake(std::uintptr_t self) {
    std::uintptr_t expected = 0;
    return owner.compare_exchange_strong(expected, self, std::memory_order_acquire,
                                         std::memory_order_relaxed);
  }

  void wait(std::uintptr_t self);
  void releaseToWaiter();

  std::atomic<std::uintptr_t> owner{0};  // 0 when free
  std::uint32_t reentries = 0;           // of the owner
  std::atomic<std::uint32_t> waiters{0};
  std::mutex gate;
  std::condition_variable freed;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_RECURSIVEMUTEX_H
