#include "KTX/TIM/KTX_TIM_Guard.h"

namespace KTX::TIM {

Guard::Guard(Lock& guarded) : heldLock(guarded) {
  heldLock.lock();
}

// A destructor is noexcept: what unlock() throws ends the process.
Guard::~Guard() {
  heldLock.unlock();
}

}  // namespace KTX::TIM
