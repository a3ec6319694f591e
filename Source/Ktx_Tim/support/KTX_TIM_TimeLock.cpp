#include "KTX/TIM/KTX_TIM_TimeLock.h"

#include "KTX/TIM/KTX_TIM_Mutex.h"

namespace KTX::TIM {

Lock& getTimeLock() {
  static Mutex mutex;
  return mutex;
}

Lock& getGlobalLock() {
  return getTimeLock();
}

}  // namespace KTX::TIM
