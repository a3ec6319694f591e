// Many threads on one reader/writer lock. VORTIME_LOCK_OPERATIONS sets how many locks all cases
// take together, VORTIME_TEST_SEED the choice of them.
#include <array>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <random>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_ReaderWriterSpinLock.h"
#include "common/KTX_TIM_LogCapture.h"

namespace KTX::TIM::TEST {
namespace {

constexpr std::array<std::size_t, 5> THREAD_COUNTS{2, 3, 4, 8, 16};

std::uint64_t numberFrom(char const* variable, std::uint64_t fallback) {
  char const* const text = std::getenv(variable);
  return text == nullptr ? fallback : std::strtoull(text, nullptr, 10);
}

// What the lock protects: the two numbers are equal whenever nobody writes.
struct ProtectedC {
  std::uint64_t first = 0;
  std::uint64_t second = 0;
};

class LockStress : public ::testing::Test {
 protected:
  void readPair() {
    if (data.first != data.second) {
      ++breaks;
    }
  }
  void writePair() {
    ++data.first;
    if (data.first != data.second + 1) {
      ++breaks;
    }
    ++data.second;
  }

  // Takes one lock, or two within each other, and returns how many.
  std::uint64_t operate(std::uint64_t choice, std::uint64_t& writes) {
    switch (choice % 8) {
      case 0: {
        Guard const guard(lock.getWriteLock());
        writePair();
        ++writes;
        return 1;
      }
      case 1: {
        if (!lock.tryLockWrite()) {
          return 1;
        }
        writePair();
        ++writes;
        lock.unlockWrite();
        return 1;
      }
      case 2: {
        lock.lockWrite();
        lock.lockRead();
        writePair();
        ++writes;
        lock.unlockWrite();
        readPair();  // still a reader
        lock.unlockRead();
        return 2;
      }
      case 3: {
        Guard const outer(lock.getWriteLock());
        Guard const inner(lock.getWriteLock());
        writePair();
        ++writes;
        return 2;
      }
      case 4: {
        if (lock.tryLockRead()) {
          readPair();
          lock.unlockRead();
        }
        return 1;
      }
      default: {
        Guard const guard(lock.getReadLock());
        readPair();
        return 1;
      }
    }
  }

  void work(std::uint64_t seed, std::uint64_t operations) {
    std::mt19937_64 random(seed);
    while (!isGateOpen) {
      std::this_thread::yield();
    }
    std::uint64_t writes = 0;
    for (std::uint64_t done = 0; done < operations;) {
      done += operate(random(), writes);
    }
    writesInAll += writes;
  }

  void run(std::size_t threadCount, std::uint64_t seed, std::uint64_t operations) {
    std::vector<std::thread> threads;
    for (std::size_t thread = 0; thread < threadCount; ++thread) {
      threads.emplace_back([=] { work(seed + thread, operations / threadCount + 1); });
    }
    isGateOpen = true;
    for (auto& thread : threads) {
      thread.join();
    }
    isGateOpen = false;
  }

  LogCaptureC log;
  ReaderWriterSpinLock lock;
  ProtectedC data;
  std::atomic<bool> isGateOpen{false};
  std::atomic<std::uint64_t> breaks{0};
  std::atomic<std::uint64_t> writesInAll{0};
};

TEST_F(LockStress, NeverBreaksExclusionAndNeverHangs) {
  std::uint64_t const operations = numberFrom("VORTIME_LOCK_OPERATIONS", 200000);
  std::uint64_t const seed = numberFrom("VORTIME_TEST_SEED", 20240307);
  std::cout << "seed " << seed << ", " << operations << " locks" << std::endl;
  for (std::size_t const threadCount : THREAD_COUNTS) {
    auto const start = std::chrono::steady_clock::now();
    run(threadCount, seed, operations / THREAD_COUNTS.size());
    std::chrono::duration<double> const seconds = std::chrono::steady_clock::now() - start;
    std::cout << threadCount << " threads: " << seconds.count() << " s" << std::endl;
    EXPECT_EQ(0U, breaks) << threadCount << " threads, seed " << seed;
  }
  EXPECT_EQ(writesInAll, data.first);
  EXPECT_EQ(writesInAll, data.second);
  EXPECT_FALSE(lock.isWriteLocked());
  EXPECT_TRUE(lock.tryLockWrite()) << "a reader was left behind";
  lock.unlockWrite();
  EXPECT_EQ(0U, log.assertionCount());
}

}  // namespace
}  // namespace KTX::TIM::TEST
