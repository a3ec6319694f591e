// Compiled by clang alone, never linked: each line that ends in "mistake" must be warned of, no
// other.
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_Mutex.h"
#include "KTX/TIM/KTX_TIM_ReaderWriterSpinLock.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"

namespace KTX::TIM {

class ProtectedC {
 public:
  int readGuarded() {
    Guard const guard(mutex);
    return own;
  }
  int readShared() {
    Guard const guard(getTimeLock());
    return shared;
  }
  int readBoth() {
    Guard const library(getTimeLock());
    Guard const guard(mutex);
    return shared + readLocked();
  }
  int readRead() {
    Guard const guard(spinLock.getReadLock());
    return spun;
  }

  int readUnguarded() {
    return own;  // mistake
  }
  int readUnderTheOtherLock() {
    Guard const guard(mutex);
    return shared;  // mistake
  }
  int callUnlocked() {
    return readLocked();  // mistake
  }
  void lockTwice() {
    Guard const guard(mutex);
    Guard const again(mutex);  // mistake
  }
  void enterHolding() {
    Guard const guard(mutex);
    enterFree();  // mistake
  }
  void writeAfterUnlock() {
    mutex.lock();
    own = 1;
    mutex.unlock();
    own = 2;  // mistake
  }

 private:
  int readLocked() KTX_TIM_REQUIRES(mutex) { return own; }
  void enterFree() KTX_TIM_EXCLUDES(mutex) { Guard const guard(mutex); }

  Mutex mutex;
  ReaderWriterSpinLock spinLock;
  int own KTX_TIM_GUARDED_BY(mutex) = 0;
  int shared KTX_TIM_GUARDED_BY(getTimeLock()) = 0;
  int spun KTX_TIM_GUARDED_BY(spinLock.getReadLock()) = 0;
};

}  // namespace KTX::TIM
