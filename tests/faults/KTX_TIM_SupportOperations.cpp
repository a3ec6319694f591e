#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "KTX/TIM/KTX_TIM_Mutex.h"
#include "KTX/TIM/KTX_TIM_ReaderWriterSpinLock.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "faults/KTX_TIM_FaultOperation.h"

namespace KTX::TIM::TEST {
namespace {

std::string stateOf(ReaderWriterSpinLock& lock) {
  bool const isFree = lock.tryLockWrite();
  if (isFree) {
    lock.unlockWrite();
  }
  return isFree ? "free" : "taken";
}

template <class ActionT>
FaultOperationC onSpinLock(std::string const& name, ActionT const& action) {
  return {name, [action](FaultStageC& /*stage*/) {
            auto const lock = std::make_shared<ReaderWriterSpinLock>();
            return CallC{[lock, action] { action(*lock); }, [lock] { return stateOf(*lock); }};
          }};
}

void logUnder(Lock& lock) {
  Guard const guard(lock);
  logAssertion();
}

FaultOperationC onMutex() {
  return {"Guard around what throws", [](FaultStageC& /*stage*/) {
            auto const mutex = std::make_shared<Mutex>();
            return CallC{[mutex] {
                           Guard const timeGuard(getTimeLock());
                           Guard const guard(*mutex);
                           logUnder(*mutex);
                         },
                         [mutex] {
                           Guard const guard(*mutex);
                           return std::string("free");
                         }};
          }};
}

}  // namespace

FaultOperationsT supportOperations() {
  return {plain("logAssertion", [] { logAssertion(); }),
          plain("logAssertion with a text", [] { logAssertion("text"); }),
          plain("logAssertion without its text", [] { logAssertion(nullptr); }),
          onMutex(),
          onSpinLock("Guard for writing around what throws",
                     [](ReaderWriterSpinLock& lock) {
                       Guard const guard(lock.getWriteLock());
                       logAssertion();
                     }),
          onSpinLock("Guard for reading around what throws",
                     [](ReaderWriterSpinLock& lock) {
                       Guard const guard(lock.getReadLock());
                       logAssertion();
                     }),
          onSpinLock("ReaderWriterSpinLock::unlockRead without a lock",
                     [](ReaderWriterSpinLock& lock) { lock.unlockRead(); })};
}

}  // namespace KTX::TIM::TEST
