#ifndef KTX_TIM_GUARD_H
#define KTX_TIM_GUARD_H

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_Lock.h"

namespace KTX::TIM {

/// Holds a lock for the length of a scope. An exception out of unlock() ends the process.
class KTX_TIM_API KTX_TIM_SCOPED_CAPABILITY Guard {
 public:
  /// Takes the lock, which must outlive the guard.
  explicit Guard(Lock& guarded) KTX_TIM_ACQUIRE(guarded);
  virtual ~Guard() KTX_TIM_RELEASE();
  Guard(Guard const&) = delete;
  Guard& operator=(Guard const&) = delete;

 private:
  Lock& heldLock;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_GUARD_H
