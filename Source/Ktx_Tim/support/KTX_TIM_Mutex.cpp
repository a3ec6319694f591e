#include "KTX/TIM/KTX_TIM_Mutex.h"

namespace KTX::TIM {

Mutex::Mutex() = default;

Mutex::~Mutex() = default;

void Mutex::lock() {
  mutex.lock();
}

void Mutex::unlock() {
  mutex.unlock();
}

}  // namespace KTX::TIM
