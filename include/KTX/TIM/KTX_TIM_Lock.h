#ifndef KTX_TIM_LOCK_H
#define KTX_TIM_LOCK_H

#include "KTX/TIM/KTX_TIM_ThreadAnnotations.h"

namespace KTX::TIM {

/// Something that can be locked and unlocked; Guard does both.
class KTX_TIM_CAPABILITY("lock") Lock {
 public:
  virtual ~Lock() = default;
  /// Waits until the lock is free, and takes it.
  virtual void lock() KTX_TIM_ACQUIRE() = 0;
  /// Gives the lock back. Only the thread that took it may do so.
  virtual void unlock() KTX_TIM_RELEASE() = 0;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_LOCK_H
