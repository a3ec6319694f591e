#ifndef KTX_TIM_ZONEOFFSET_H
#define KTX_TIM_ZONEOFFSET_H

#include <cstdint>
#include <string>

namespace KTX::TIM {

/// What the clocks of a zone show for a while.
struct ZoneOffsetC {
  std::int32_t secondsEast = 0;
  bool isDaylight = false;
  std::string abbreviation;
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_ZONEOFFSET_H
