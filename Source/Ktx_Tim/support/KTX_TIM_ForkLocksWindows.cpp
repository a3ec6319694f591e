#include "support/KTX_TIM_ForkLocks.h"

namespace KTX::TIM {

void keepUsableAfterFork(ForkLockE /*place*/, Mutex& /*mutex*/) {}

void watchForks() {}

void forgetForkLocks() {}

}  // namespace KTX::TIM
