#include "KTX/TIM/KTX_TIM_PresentWarning.h"

#include <atomic>

#include "currenttime/KTX_TIM_PresentWarningSwitch.h"

namespace KTX::TIM {
namespace {

std::atomic<bool> enabled{true};

}  // namespace

void setPresentWarningEnabled(bool isEnabled) {
  enabled.store(isEnabled, std::memory_order_relaxed);
}

bool isPresentWarningEnabled() {
  return enabled.load(std::memory_order_relaxed);
}

}  // namespace KTX::TIM
