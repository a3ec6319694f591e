#include "KTX/TIM/KTX_TIM_Mutex.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#ifndef _WIN32
#include "support/KTX_TIM_LockWait.h"
#endif

namespace KTX::TIM::TEST {
namespace {

using ::testing::ElementsAre;

static_assert(std::is_abstract_v<Lock> && std::has_virtual_destructor_v<Lock>);
static_assert(std::is_base_of_v<Lock, Mutex>);
static_assert(!std::is_copy_constructible_v<Mutex> && !std::is_copy_assignable_v<Mutex>);
static_assert(!std::is_move_constructible_v<Mutex> && !std::is_move_assignable_v<Mutex>);
static_assert(std::has_virtual_destructor_v<Guard>);
static_assert(!std::is_copy_constructible_v<Guard> && !std::is_copy_assignable_v<Guard>);
static_assert(!std::is_move_constructible_v<Guard> && !std::is_move_assignable_v<Guard>);
static_assert(std::is_nothrow_destructible_v<Guard>);
static_assert(!std::is_convertible_v<Lock&, Guard>);

// Lets several threads add to a plain counter, each turn under the lock, taken depth times.
std::int64_t countUnder(Lock& lock, int depth) KTX_TIM_NO_THREAD_SAFETY_ANALYSIS {
  constexpr int THREADS = 4;
  constexpr int TURNS = 2000;
  std::int64_t counter = 0;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < THREADS; ++thread) {
    threads.emplace_back([&]() KTX_TIM_NO_THREAD_SAFETY_ANALYSIS {
      for (int turn = 0; turn < TURNS; ++turn) {
        for (int level = 0; level < depth; ++level) {
          lock.lock();
        }
        ++counter;
        for (int level = 0; level < depth; ++level) {
          lock.unlock();
        }
      }
    });
  }
  for (auto& thread : threads) {
    thread.join();
  }
  return counter - std::int64_t{THREADS} * TURNS;
}

TEST(Mutex, LetsOneThreadInAtATime) {
  Mutex mutex;
  EXPECT_EQ(0, countUnder(mutex, 1));
  EXPECT_EQ(0, countUnder(mutex, 3));
}

// The other thread writes its mark only once the mutex is free; the marks before show that it was
// not free earlier.
TEST(Mutex, IsFreeForOthersOnlyAfterAsManyUnlocks) {
  Mutex mutex;
  std::vector<std::string> marks;
  mutex.lock();
  mutex.lock();
  std::thread other([&] {
    Guard const guard(mutex);
    marks.emplace_back("other");
  });
  mutex.unlock();
  marks.emplace_back("after one unlock");
  mutex.unlock();
  other.join();
  EXPECT_THAT(marks, ElementsAre("after one unlock", "other"));
}

// Threads that wait for a lock, or are about to, until they are joined.
class WaitersC {
 public:
  WaitersC(Lock& lock, std::size_t count) {
    for (std::size_t waiter = 0; waiter < count; ++waiter) {
      threads.emplace_back([this, &lock] {
        ++arrived;
        Guard const guard(lock);
        ++entries;
      });
    }
    while (arrived < count) {
      std::this_thread::yield();
    }
  }

  void join() {
    for (auto& thread : threads) {
      thread.join();
    }
  }

  // Changed and read under the lock, or after join().
  std::size_t entries = 0;

 private:
  std::atomic<std::size_t> arrived{0};
  std::vector<std::thread> threads;
};

TEST(Mutex, IsHandedOverToEveryThreadThatWaits) {
  constexpr std::size_t WAITERS = 8;
  for (int turn = 0; turn < 100; ++turn) {
    Mutex mutex;
    mutex.lock();
    WaitersC waiters(mutex, WAITERS);
    EXPECT_EQ(0U, waiters.entries);
    mutex.unlock();
    waiters.join();
    EXPECT_EQ(WAITERS, waiters.entries);
  }
}

#ifndef _WIN32

// Waits until the other thread sleeps for a lock, or has got it.
LockWaitE awaitLockWait(std::atomic<pid_t> const& threadId, std::atomic<bool> const& isIn) {
  LockWaitE wait = LOCKWAIT_NONE;
  while (wait == LOCKWAIT_NONE && !isIn) {
    std::this_thread::yield();
    wait = threadId == 0 ? LOCKWAIT_NONE : lockWaitOf(threadId);
  }
  return wait;
}

TEST(Mutex, LetsAThreadSleepUntilTheLockIsFree) {
  Mutex mutex;
  std::atomic<pid_t> threadId{0};
  std::atomic<bool> isIn{false};
  mutex.lock();
  std::thread waiter([&] {
    threadId = systemThreadId();
    Guard const guard(mutex);
    isIn = true;
  });
  EXPECT_EQ(LOCKWAIT_UNTIMED, awaitLockWait(threadId, isIn));
  mutex.unlock();
  waiter.join();
  EXPECT_TRUE(isIn);
}

// The next thread gets the stack and the thread block of the one that ended, but not its lock. Runs
// in a process of its own, which ends while that thread waits.
TEST(MutexDeathTest, StaysLockedWhenItsThreadEnds) {
  EXPECT_EXIT(
      {
        Mutex mutex;
        std::thread([&mutex] { mutex.lock(); }).join();
        std::atomic<pid_t> threadId{0};
        std::atomic<bool> isIn{false};
        std::thread([&] {
          threadId = systemThreadId();
          mutex.lock();
          isIn = true;
        }).detach();
        std::_Exit(awaitLockWait(threadId, isIn) == LOCKWAIT_UNTIMED ? 0 : 1);
      },
      ::testing::ExitedWithCode(0), "");
}

#endif

TEST(TimeLock, IsOneRecursiveLockUnderTwoNames) {
  EXPECT_EQ(&getTimeLock(), &getGlobalLock());
  EXPECT_EQ(&getTimeLock(), &getTimeLock());
  EXPECT_NE(nullptr, dynamic_cast<Mutex*>(&getTimeLock()));
  EXPECT_EQ(0, countUnder(getTimeLock(), 2));
}

class JournalLockC : public Lock {
 public:
  void lock() override { marks.emplace_back("lock"); }
  void unlock() override { marks.emplace_back("unlock"); }

  std::vector<std::string> marks;
};

TEST(Guard, LocksAndUnlocksOnce) {
  JournalLockC lock;
  {
    Guard const guard(lock);
    EXPECT_THAT(lock.marks, ElementsAre("lock"));
  }
  EXPECT_THAT(lock.marks, ElementsAre("lock", "unlock"));
}

TEST(Guard, UnlocksWhenAnExceptionLeavesItsScope) {
  JournalLockC lock;
  try {
    Guard const guard(lock);
    throw std::runtime_error("scope");
  } catch (std::runtime_error const&) {
    lock.marks.emplace_back("caught");
  }
  EXPECT_THAT(lock.marks, ElementsAre("lock", "unlock", "caught"));
}

class ThrowingLockC : public Lock {
 public:
  explicit ThrowingLockC(bool throwsInLock) : isLockThrowing(throwsInLock) {}

  void lock() override {
    if (isLockThrowing) {
      throw std::runtime_error("lock");
    }
  }
  void unlock() override {
    ++unlocks;
    throw std::runtime_error("unlock");
  }

  int unlocks = 0;

 private:
  bool const isLockThrowing;
};

TEST(Guard, PassesAnExceptionOfLockOnAndDoesNotUnlock) {
  ThrowingLockC lock(true);
  EXPECT_THROW(Guard{lock}, std::runtime_error);
  EXPECT_EQ(0, lock.unlocks);
}

TEST(GuardDeathTest, AnExceptionOfUnlockEndsTheProcess) {
  ThrowingLockC lock(false);
  EXPECT_DEATH(
      {
        try {
          Guard const guard(lock);
        } catch (std::runtime_error const&) {
          std::exit(0);
        }
      },
      "");
}

}  // namespace
}  // namespace KTX::TIM::TEST
