#include "Areas.h"
#include "Check.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "KTX/TIM/KTX_TIM_Mutex.h"
#include "KTX/TIM/KTX_TIM_ReaderWriterSpinLock.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"

using namespace KTX::TIM;

namespace {

/// A lock of this module's own, held by the library's guard.
class CountingLockC : public Lock {
 public:
  void lock() override { ++held; }
  void unlock() override { --held; }
  int held = 0;
};

class OwnMutexC : public Mutex {};
class OwnGuardC : public Guard {
 public:
  explicit OwnGuardC(Lock& guarded) : Guard(guarded) {}
};
class OwnSpinLockC : public ReaderWriterSpinLock {};

void useGuards() {
  CountingLockC counting;
  {
    Guard const outer(counting);
    OwnGuardC const inner(counting);
    CHECK(counting.held == 2);
  }
  CHECK(counting.held == 0);
  Mutex mutex;
  mutex.lock();
  Guard const again(mutex);
  mutex.unlock();
  OwnMutexC own;
  Guard const held(static_cast<Lock&>(own));
  CHECK(&getTimeLock() == &getGlobalLock());
  Guard const wide(getTimeLock());
}

void useSpinLock() {
  ReaderWriterSpinLock lock;
  lock.lockRead();
  CHECK(lock.tryLockRead() && !lock.tryLockWrite());
  lock.unlockRead();
  lock.unlockRead();
  lock.lockWrite();
  CHECK(lock.isWriteLocked() && lock.tryLockWrite());
  lock.unlockWrite();
  lock.unlockWrite();
  OwnSpinLockC own;
  { Guard const reading(own.getReadLock()); }
  Guard const writing(own.getWriteLock());
  CHECK(own.isWriteLocked());
}

}  // namespace

void useLocks() {
  useGuards();
  useSpinLock();
  logAssertion();
  logAssertion("100%s of it");
}
