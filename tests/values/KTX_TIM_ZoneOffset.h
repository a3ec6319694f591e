#ifndef KTX_TIM_ZONEOFFSET_H
#define KTX_TIM_ZONEOFFSET_H

#include <cstdint>

#include "common/KTX_TIM_FakeSystemCalls.h"
#include "common/KTX_TIM_ScopedSystemCalls.h"

namespace KTX::TIM::TEST {

/// Gives the system's zone a fixed offset for the length of a scope.
class ZoneOffsetC {
 public:
  explicit ZoneOffsetC(std::int32_t minutesEast) : scope(calls) {
    calls.setZone(-minutesEast, u"Test Standard Time");
  }

 private:
  FakeSystemCallsC calls;
  ScopedSystemCallsC scope;
};

}  // namespace KTX::TIM::TEST

#endif  // KTX_TIM_ZONEOFFSET_H
