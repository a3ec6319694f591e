#include "KTX/TIM/KTX_TIM_TickCount.h"

#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "currenttime/KTX_TIM_TickCountOf.h"
#include "support/KTX_TIM_ProcessObject.h"

namespace KTX::TIM {

std::uint32_t tickCountOf(ClockI<boost::milli> const& clock) {
  return static_cast<std::uint32_t>(clock.now().count());
}

std::uint32_t getTickCountMs() {
  static ProcessObjectC<boost::shared_ptr<ClockI<boost::milli>>> clock(
      createClock<boost::milli>(CLOCKTYPE_STEADY, CLOCKREF_DEFAULT));
  return tickCountOf(**clock);
}

}  // namespace KTX::TIM
