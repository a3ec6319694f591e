// Takes the place of the library's Mutex in programs that watch the order of locks.
#include "KTX/TIM/KTX_TIM_Mutex.h"
#include "common/KTX_TIM_LockOrder.h"

namespace KTX::TIM {

using TEST::LockOrderC;

Mutex::Mutex() = default;

Mutex::~Mutex() {
  LockOrderC::destroyed(*this);
}

void Mutex::lock() {
  LockOrderC::locking(*this);  // before the wait: a deadlock is reported too
  mutex.lock();
}

void Mutex::unlock() {
  mutex.unlock();
  LockOrderC::unlocked(*this);
}

}  // namespace KTX::TIM
