#include "KTX/TIM/KTX_TIM_Mutex.h"

#include <cstdint>
#include <stdexcept>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"

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
