#ifndef KTX_TIM_WRITELOCK_H
#define KTX_TIM_WRITELOCK_H

#include "KTX/TIM/KTX_TIM_Lock.h"

namespace KTX::TIM {

/// Offers the write side of a reader/writer lock T as a Lock. T must outlive it.
template <class T>
class WriteLock : public Lock {
 public:
  /// Serves the write side of target, which must not be null.
  explicit WriteLock(T* target) : served(target) {}
  ~WriteLock() override = default;

  void lock() override { served->lockWrite(); }
  void unlock() override { served->unlockWrite(); }

 private:
  T* served;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_WRITELOCK_H
