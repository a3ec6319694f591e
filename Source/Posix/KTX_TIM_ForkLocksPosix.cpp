#include "support/KTX_TIM_ForkLocks.h"

#include <array>
#include <atomic>
#include <new>
#include <pthread.h>

#include "KTX/TIM/KTX_TIM_Mutex.h"

namespace KTX::TIM {

/// Reaches what a Mutex is made of.
class ForkedMutexC {
 public:
  /// In the child, for a mutex that the only thread holds. That thread has a new id there, by which
  /// the system no longer knows it as the owner, so that it could not unlock the mutex.
  static void renewWithoutLastLock(Mutex& mutex) {
    boost::recursive_mutex& inner = mutex.mutex;
    unsigned const locks = inner.native_handle()->__data.__count;
    ::new (static_cast<void*>(&inner)) boost::recursive_mutex;
    for (unsigned lock = 1; lock < locks; ++lock) {
      inner.lock();
    }
  }
};

namespace {

std::array<std::atomic<Mutex*>, FORKLOCK_COUNT> forkLocks{};

void beforeFork() KTX_TIM_NO_THREAD_SAFETY_ANALYSIS {
  for (Mutex* const mutex : forkLocks) {
    if (mutex != nullptr) {
      mutex->lock();
    }
  }
}

void afterForkInParent() KTX_TIM_NO_THREAD_SAFETY_ANALYSIS {
  for (Mutex* const mutex : forkLocks) {
    if (mutex != nullptr) {
      mutex->unlock();
    }
  }
}

void afterForkInChild() {
  for (Mutex* const mutex : forkLocks) {
    if (mutex != nullptr) {
      ForkedMutexC::renewWithoutLastLock(*mutex);
    }
  }
}

}  // namespace

void keepUsableAfterFork(ForkLockE place, Mutex& mutex) {
  forkLocks[place] = &mutex;
}

// Unloading withdraws the handlers. Without memory for them forks go on without.
void watchForks() {
  pthread_atfork(&beforeFork, &afterForkInParent, &afterForkInChild);
}

void forgetForkLocks() {
  for (auto& mutex : forkLocks) {
    mutex = nullptr;
  }
}

}  // namespace KTX::TIM
