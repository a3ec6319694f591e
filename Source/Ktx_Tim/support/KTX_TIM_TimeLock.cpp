#include "KTX/TIM/KTX_TIM_TimeLock.h"

#include "KTX/TIM/KTX_TIM_Mutex.h"
#include "support/KTX_TIM_ForkLocks.h"
#include "support/KTX_TIM_ProcessObject.h"

namespace KTX::TIM {

namespace {

class TimeLockC {
 public:
  TimeLockC() { keepUsableAfterFork(FORKLOCK_LIBRARY, mutex); }

  Mutex mutex;
};

}  // namespace

Lock& getTimeLock() {
  static ProcessObjectC<TimeLockC> lock;
  return (*lock).mutex;
}

// One function under two names, and so under two ordinals.
#if defined(_MSC_VER)
Lock& getGlobalLock() {
  return getTimeLock();
}
#else
Lock& getGlobalLock() __attribute__((alias("_ZN3KTX3TIM11getTimeLockEv")));
#endif

}  // namespace KTX::TIM
