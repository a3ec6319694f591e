#include "support/KTX_TIM_SystemCalls.h"

#include <atomic>

namespace KTX::TIM {

namespace {

std::atomic<SystemCallsI*> replacement{nullptr};

}  // namespace

SystemCallsI& systemCalls() {
  SystemCallsI* const calls = replacement.load();
  return calls != nullptr ? *calls : operatingSystemCalls();
}

SystemCallsI* replaceSystemCalls(SystemCallsI* calls) {
  return replacement.exchange(calls);
}

}  // namespace KTX::TIM
