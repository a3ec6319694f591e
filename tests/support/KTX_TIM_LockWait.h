#ifndef KTX_TIM_LOCKWAIT_H
#define KTX_TIM_LOCKWAIT_H

#include <sys/types.h>

namespace KTX::TIM::TEST {

/// How a thread waits for a lock, by what Linux says of its system call.
enum LockWaitE {
  LOCKWAIT_NONE,     // it is not in the kernel for a lock
  LOCKWAIT_TIMED,    // a timer wakes it, to look whether the lock is free
  LOCKWAIT_UNTIMED,  // only the release of the lock wakes it
};

/// The system's id of the calling thread.
pid_t systemThreadId();

/// How this thread of the process waits at this moment.
LockWaitE lockWaitOf(pid_t threadId);

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_LOCKWAIT_H
