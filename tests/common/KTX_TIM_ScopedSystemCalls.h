#ifndef KTX_TIM_SCOPEDSYSTEMCALLS_H
#define KTX_TIM_SCOPEDSYSTEMCALLS_H

#include "support/KTX_TIM_SystemCalls.h"

namespace KTX::TIM::TEST {

/// Puts other system calls in for the length of a scope.
class ScopedSystemCallsC {
 public:
  explicit ScopedSystemCallsC(SystemCallsI& calls) : previous(replaceSystemCalls(&calls)) {}
  ~ScopedSystemCallsC() { replaceSystemCalls(previous); }
  ScopedSystemCallsC(ScopedSystemCallsC const&) = delete;
  ScopedSystemCallsC& operator=(ScopedSystemCallsC const&) = delete;

 private:
  SystemCallsI* const previous;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_SCOPEDSYSTEMCALLS_H
