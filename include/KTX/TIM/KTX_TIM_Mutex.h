#ifndef KTX_TIM_MUTEX_H
#define KTX_TIM_MUTEX_H

#include <boost/thread/recursive_mutex.hpp>

#include "KTX/TIM/KTX_TIM_Api.h"
#include "KTX/TIM/KTX_TIM_Lock.h"

namespace KTX::TIM {

/// A recursive lock: the owning thread may take it again and must unlock it as often before
/// another thread can take it. Waits in the kernel.
class KTX_TIM_API KTX_TIM_CAPABILITY("mutex") Mutex : public Lock {
 public:
  Mutex();
  ~Mutex() override;
  Mutex(Mutex const&) = delete;
  Mutex& operator=(Mutex const&) = delete;

  void lock() KTX_TIM_ACQUIRE() override;
  void unlock() KTX_TIM_RELEASE() override;

 private:
  friend class ForkedMutexC;

  boost::recursive_mutex mutex;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_MUTEX_H
