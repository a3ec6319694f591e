#include "KTX/TIM/KTX_TIM_ReaderWriterSpinLock.h"

#include <future>
#include <type_traits>

#include <boost/thread/thread.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_Guard.h"
#include "common/KTX_TIM_LogCapture.h"

namespace KTX::TIM::TEST {
namespace {

using ReadLockT = ReadLock<ReaderWriterSpinLock>;
using WriteLockT = WriteLock<ReaderWriterSpinLock>;

static_assert(!std::is_copy_constructible_v<ReaderWriterSpinLock>);
static_assert(!std::is_copy_assignable_v<ReaderWriterSpinLock>);
static_assert(!std::is_move_constructible_v<ReaderWriterSpinLock>);
static_assert(!std::is_move_assignable_v<ReaderWriterSpinLock>);
static_assert(std::has_virtual_destructor_v<ReaderWriterSpinLock>);
static_assert(std::is_base_of_v<Lock, ReadLockT> && std::is_base_of_v<Lock, WriteLockT>);

class ReaderWriterSpinLockTest : public ::testing::Test {
 protected:
  // What another thread, which holds nothing, gets at once; it gives it back.
  bool otherCanRead() {
    return std::async(std::launch::async,
                      [this] {
                        bool const isTaken = lock.tryLockRead();
                        if (isTaken) {
                          lock.unlockRead();
                        }
                        return isTaken;
                      })
        .get();
  }
  bool otherCanWrite() {
    return std::async(std::launch::async,
                      [this] {
                        bool const isTaken = lock.tryLockWrite();
                        if (isTaken) {
                          lock.unlockWrite();
                        }
                        return isTaken;
                      })
        .get();
  }

  LogCaptureC log;
  ReaderWriterSpinLock lock;
};

TEST_F(ReaderWriterSpinLockTest, IsFreeAtTheStart) {
  EXPECT_FALSE(lock.isWriteLocked());
  EXPECT_TRUE(otherCanRead());
  EXPECT_TRUE(otherCanWrite());
}

TEST_F(ReaderWriterSpinLockTest, ReadersShareAndKeepWritersOut) {
  lock.lockRead();
  lock.lockRead();
  EXPECT_TRUE(otherCanRead());
  EXPECT_FALSE(otherCanWrite());
  EXPECT_FALSE(lock.isWriteLocked());
  lock.unlockRead();
  EXPECT_FALSE(otherCanWrite());
  lock.unlockRead();
  EXPECT_TRUE(otherCanWrite());
}

TEST_F(ReaderWriterSpinLockTest, TheWriterKeepsAllOthersOut) {
  lock.lockWrite();
  EXPECT_TRUE(lock.isWriteLocked());
  EXPECT_FALSE(otherCanRead());
  EXPECT_FALSE(otherCanWrite());
  lock.unlockWrite();
  EXPECT_FALSE(lock.isWriteLocked());
  EXPECT_TRUE(otherCanRead());
  EXPECT_TRUE(otherCanWrite());
}

TEST_F(ReaderWriterSpinLockTest, TheWriterMayTakeFurtherLocksAndGivesEachBack) {
  lock.lockWrite();
  lock.lockWrite();
  EXPECT_TRUE(lock.tryLockWrite());
  lock.lockRead();
  EXPECT_TRUE(lock.tryLockRead());
  lock.unlockRead();
  lock.unlockRead();
  lock.unlockWrite();
  lock.unlockWrite();
  EXPECT_TRUE(lock.isWriteLocked());
  EXPECT_FALSE(otherCanRead());
  lock.unlockWrite();
  EXPECT_FALSE(lock.isWriteLocked());
  EXPECT_TRUE(otherCanWrite());
  EXPECT_EQ(0U, log.assertionCount());
}

TEST_F(ReaderWriterSpinLockTest, AReadLockOfTheWriterOutlivesTheWriteLock) {
  lock.lockWrite();
  lock.lockRead();
  lock.unlockWrite();
  EXPECT_TRUE(otherCanRead());
  EXPECT_FALSE(otherCanWrite());
  lock.unlockRead();
  EXPECT_TRUE(otherCanWrite());
}

TEST_F(ReaderWriterSpinLockTest, AReaderDoesNotGetTheWriteLock) {
  lock.lockRead();
  EXPECT_FALSE(lock.tryLockWrite());
  EXPECT_TRUE(otherCanRead());
  lock.unlockRead();
  EXPECT_TRUE(lock.tryLockWrite());
  lock.unlockWrite();
}

TEST_F(ReaderWriterSpinLockTest, UnlockingAReadThatIsNotHeldIsReportedAndCounted) {
  lock.unlockRead();
  EXPECT_EQ(1U, log.assertionCount());
  EXPECT_EQ("%s %d: Assertion!", log.entries().at(0).format);
  EXPECT_FALSE(otherCanWrite()) << "a count below zero keeps writers out";
  lock.lockRead();
  EXPECT_TRUE(otherCanWrite()) << "the read lock that is held only makes good the count";
  lock.lockRead();
  lock.unlockRead();
  EXPECT_EQ(1U, log.assertionCount());
}

TEST_F(ReaderWriterSpinLockTest, UnlockingAWriteTwiceIsNotReported) {
  lock.lockWrite();
  lock.unlockWrite();
  lock.unlockWrite();
  EXPECT_EQ(0U, log.assertionCount());
  EXPECT_FALSE(lock.isWriteLocked());
  EXPECT_TRUE(otherCanRead());
  EXPECT_TRUE(otherCanWrite());
  lock.lockWrite();
  EXPECT_TRUE(lock.isWriteLocked());
  lock.unlockWrite();
  EXPECT_FALSE(lock.isWriteLocked());
}

TEST_F(ReaderWriterSpinLockTest, GuardsTakeEitherSide) {
  {
    Guard const guard(lock.getReadLock());
    EXPECT_TRUE(otherCanRead());
    EXPECT_FALSE(otherCanWrite());
  }
  {
    Guard const outer(lock.getWriteLock());
    Guard const inner(lock.getWriteLock());
    Guard const reading(lock.getReadLock());
    EXPECT_FALSE(otherCanRead());
  }
  EXPECT_TRUE(otherCanWrite());
  EXPECT_NE(nullptr, dynamic_cast<ReadLockT*>(&lock.getReadLock()));
  EXPECT_NE(nullptr, dynamic_cast<WriteLockT*>(&lock.getWriteLock()));
  EXPECT_EQ(&lock.getReadLock(), &lock.getReadLock());
}

TEST_F(ReaderWriterSpinLockTest, AWaitCanBeInterruptedAndLeavesNothingBehind) {
  for (bool const isReader : {true, false}) {
    SCOPED_TRACE(isReader);
    lock.lockWrite();
    bool isInterrupted = false;
    boost::thread waiter([&] {
      try {
        Guard const guard(isReader ? lock.getReadLock() : lock.getWriteLock());
      } catch (boost::thread_interrupted const&) {
        isInterrupted = true;
      }
    });
    waiter.interrupt();
    waiter.join();
    EXPECT_TRUE(isInterrupted);
    lock.unlockWrite();
    EXPECT_TRUE(otherCanRead());
    EXPECT_TRUE(otherCanWrite());
  }
}

TEST_F(ReaderWriterSpinLockTest, WaitingThreadsGoOnWhenTheLockIsGivenBack) {
  int value = 0;
  lock.lockWrite();
  auto reader = std::async(std::launch::async, [&] {
    Guard const guard(lock.getReadLock());
    return value;
  });
  value = 1;
  lock.unlockWrite();
  EXPECT_EQ(1, reader.get());

  lock.lockRead();
  auto writer = std::async(std::launch::async, [&] {
    Guard const guard(lock.getWriteLock());
    value = 2;
  });
  EXPECT_EQ(1, value);
  lock.unlockRead();
  writer.get();
  EXPECT_EQ(2, value);
}

}  // namespace
}  // namespace KTX::TIM::TEST
