#include "KTX/TIM/KTX_TIM_RecursiveMutex.h"

#include <atomic>
#include <memory>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "support/KTX_TIM_ThreadKey.h"

namespace KTX::TIM::TEST {
namespace {

static_assert(!std::is_copy_constructible_v<RecursiveMutexC>);
static_assert(!std::is_copy_assignable_v<RecursiveMutexC>);

TEST(RecursiveMutex, LetsOneThreadInAtATimeHoweverOftenItEnters) {
  RecursiveMutexC mutex;
  int inside = 0;
  int total = 0;
  int violations = 0;
  std::atomic<bool> isOpen{false};
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] {
      while (!isOpen) {
        std::this_thread::yield();
      }
      std::uintptr_t const self = currentThreadKey();
      for (int i = 0; i < 20000; ++i) {
        int const depth = i % 3 + 1;
        for (int level = 0; level < depth; ++level) {
          mutex.lockAs(self);
        }
        ++inside;
        violations += inside == 1 ? 0 : 1;
        ++total;
        --inside;
        for (int level = 0; level < depth; ++level) {
          mutex.unlock();
        }
      }
    });
  }
  isOpen = true;
  for (std::thread& thread : threads) {
    thread.join();
  }
  EXPECT_EQ(80000, total);
  EXPECT_EQ(0, violations);
}

TEST(RecursiveMutex, KeepsOthersOutUntilTheLastUnlock) {
  RecursiveMutexC mutex;
  std::uintptr_t const self = currentThreadKey();
  std::atomic<bool> isIn{false};
  mutex.lockAs(self);
  mutex.lockAs(self);
  std::thread other([&] {
    mutex.lockAs(currentThreadKey());
    isIn = true;
    mutex.unlock();
  });
  mutex.unlock();
  for (int i = 0; i < 100; ++i) {
    std::this_thread::yield();
    EXPECT_FALSE(isIn);
  }
  mutex.unlock();
  other.join();
  EXPECT_TRUE(isIn);
}

// The second thread destroys the lock as soon as it has had it, while the first may still be on its
// way out of unlock(). The address sanitizer sees a step too far.
TEST(RecursiveMutex, MayBeDestroyedByTheNextThreadThatHadIt) {
  for (int i = 0; i < 500; ++i) {
    auto mutex = std::make_unique<RecursiveMutexC>();
    RecursiveMutexC* const shared = mutex.get();
    std::atomic<bool> isHeld{false};
    std::thread first([&isHeld, shared] {
      shared->lockAs(currentThreadKey());
      isHeld = true;
      shared->unlock();
    });
    while (!isHeld) {
      std::this_thread::yield();
    }
    shared->lockAs(currentThreadKey());
    shared->unlock();
    mutex.reset();
    first.join();
  }
}

TEST(ThreadKey, TellsLivingThreadsApart) {
  std::uintptr_t const self = currentThreadKey();
  std::uintptr_t other = 0;
  std::thread([&other] { other = currentThreadKey(); }).join();
  EXPECT_NE(0U, self);
  EXPECT_NE(0U, other);
  EXPECT_NE(self, other);
  EXPECT_EQ(self, currentThreadKey());
}

}  // namespace
}  // namespace KTX::TIM::TEST
