#ifndef KTX_TIM_MUTEXGUARD_H
#define KTX_TIM_MUTEXGUARD_H

#include "KTX/TIM/KTX_TIM_Mutex.h"

namespace KTX::TIM {

/// Guard for a lock that is known to be a Mutex, without the virtual calls: for locks that every
/// conversion takes.
class KTX_TIM_SCOPED_CAPABILITY MutexGuardC {
 public:
  explicit MutexGuardC(Mutex& guarded) KTX_TIM_ACQUIRE(guarded) : mutex(guarded) {
    mutex.Mutex::lock();
  }
  ~MutexGuardC() KTX_TIM_RELEASE() { mutex.Mutex::unlock(); }
  MutexGuardC(MutexGuardC const&) = delete;
  MutexGuardC& operator=(MutexGuardC const&) = delete;

 private:
  Mutex& mutex;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_MUTEXGUARD_H
