// Threads that wait for the reader/writer lock, with the C library's wait replaced: no thread
// sleeps, and the lock is given back where one would.
#include <cerrno>
#include <ctime>
#include <functional>
#include <pthread.h>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_ReaderWriterSpinLock.h"

namespace {

std::vector<std::int64_t> waitsNs;
std::function<void()> onWait;

std::int64_t nsUntil(timespec const& end) {
  timespec now{};
  clock_gettime(CLOCK_MONOTONIC, &now);
  return (end.tv_sec - now.tv_sec) * std::int64_t{1000000000} + end.tv_nsec - now.tv_nsec;
}

}  // namespace

extern "C" int pthread_cond_timedwait(pthread_cond_t* /*condition*/,
                                      pthread_mutex_t* /*mutex*/,
                                      timespec const* end) {
  waitsNs.push_back(nsUntil(*end));
  onWait();
  return ETIMEDOUT;
}

namespace KTX::TIM::TEST {
namespace {

class ReaderWriterWait : public ::testing::Test {
 protected:
  static constexpr std::int64_t LONGEST_WAIT_NS = 100000;

  ~ReaderWriterWait() override {
    waitsNs.clear();
    onWait = nullptr;
  }

  static void inOtherThread(std::function<void()> const& action) {
    std::thread thread(action);
    thread.join();
  }

  // Gives the lock back where the waiting thread sleeps for the count-th time.
  static void releaseAtWait(std::size_t count, std::function<void()> const& release) {
    waitsNs.clear();
    onWait = [count, release] {
      if (waitsNs.size() == count) {
        release();
      }
    };
  }

  static void expectWaits(std::size_t count) {
    EXPECT_EQ(count, waitsNs.size());
    for (std::int64_t const ns : waitsNs) {
      EXPECT_GE(LONGEST_WAIT_NS, ns);
    }
  }

  ReaderWriterSpinLock lock;
};

TEST_F(ReaderWriterWait, AReaderSleepsUntilTheWriterHasGone) {
  for (std::size_t const count : {1U, 2U, 7U}) {
    inOtherThread([this] { lock.lockWrite(); });
    releaseAtWait(count, [this] { lock.unlockWrite(); });
    lock.lockRead();
    expectWaits(count);
    EXPECT_FALSE(lock.isWriteLocked());
    EXPECT_FALSE(lock.tryLockWrite());
    lock.unlockRead();
    EXPECT_TRUE(lock.tryLockWrite());
    lock.unlockWrite();
  }
}

TEST_F(ReaderWriterWait, AWriterSleepsUntilTheLastReaderHasGone) {
  for (std::size_t const count : {1U, 2U, 7U}) {
    inOtherThread([this] { lock.lockRead(); });
    releaseAtWait(count, [this] { lock.unlockRead(); });
    lock.lockWrite();
    expectWaits(count);
    EXPECT_TRUE(lock.isWriteLocked());
    inOtherThread([this] { EXPECT_FALSE(lock.tryLockRead()); });
    lock.unlockWrite();
  }
}

TEST_F(ReaderWriterWait, AWriterSleepsUntilTheOtherWriterHasGone) {
  inOtherThread([this] { lock.lockWrite(); });
  releaseAtWait(3, [this] { lock.unlockWrite(); });
  lock.lockWrite();
  expectWaits(3);
  EXPECT_TRUE(lock.isWriteLocked());
  lock.unlockWrite();
  EXPECT_FALSE(lock.isWriteLocked());
}

}  // namespace
}  // namespace KTX::TIM::TEST
