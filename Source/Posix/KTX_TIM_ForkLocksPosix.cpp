#include "support/KTX_TIM_ForkLocks.h"

#include <array>
#include <atomic>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

#include "KTX/TIM/KTX_TIM_Mutex.h"

namespace KTX::TIM {

/// Reaches what a Mutex is made of.
class ForkedMutexC {
 public:
  /// Gives back one lock in the child. The only thread has a new id there, by which the system does
  /// not know it as the owner of what it held before.
  static void unlockInChild(Mutex& mutex) {
    mutex.mutex.native_handle()->__data.__owner = static_cast<int>(syscall(SYS_gettid));
    mutex.mutex.unlock();
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
      ForkedMutexC::unlockInChild(*mutex);
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
