#ifndef KTX_TIM_READLOCK_H
#define KTX_TIM_READLOCK_H

#include "KTX/TIM/KTX_TIM_Lock.h"

namespace KTX::TIM {

/// Offers the read side of a reader/writer lock T as a Lock. T must outlive it.
template <class T>
class ReadLock : public Lock {
 public:
  /// Serves the read side of target, which must not be null.
  explicit ReadLock(T* target) : served(target) {}
  ~ReadLock() override = default;

  void lock() override { served->lockRead(); }
  void unlock() override { served->unlockRead(); }

 private:
  T* served;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_READLOCK_H
