#ifndef KTX_TIM_FORKLOCKS_H
#define KTX_TIM_FORKLOCKS_H

namespace KTX::TIM {

class Mutex;

/// The locks of the library that stay usable in the child of a fork(), in the order of taking.
enum ForkLockE {
  FORKLOCK_LIBRARY,
  FORKLOCK_STORE,
  FORKLOCK_ZONENAME,
  FORKLOCK_ZONETREE,
  FORKLOCK_COUNT,
};

/// Has a lock taken before each fork() and given back after it, in both processes: no other thread
/// is then inside what it guards, and the child finds that whole. What the calling thread holds it
/// goes on holding, in the child too. Does nothing on Windows.
void keepUsableAfterFork(ForkLockE place, Mutex& mutex);

/// Called once, when all locks are known and the log, whose own lock is the innermost one, is open.
void watchForks();

/// Called before the locks are destroyed.
void forgetForkLocks();

}  // namespace KTX::TIM

#endif  // KTX_TIM_FORKLOCKS_H
