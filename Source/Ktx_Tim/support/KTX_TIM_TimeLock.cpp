#include "KTX/TIM/KTX_TIM_TimeLock.h"

#include "KTX/TIM/KTX_TIM_Mutex.h"
#include "support/KTX_TIM_ProcessObject.h"

namespace KTX::TIM {

Lock& getTimeLock() {
  static ProcessObjectC<Mutex> mutex;
  return *mutex;
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
