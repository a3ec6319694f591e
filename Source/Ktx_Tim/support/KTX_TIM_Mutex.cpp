#include "KTX/TIM/KTX_TIM_Mutex.h"

#include "support/KTX_TIM_ThreadKey.h"

namespace KTX::TIM {

Mutex::Mutex() = default;

Mutex::~Mutex() = default;

void Mutex::lock() {
  mutex.lockAs(currentThreadKey());
}

void Mutex::unlock() {
  mutex.unlock();
}

}  // namespace KTX::TIM
