#include "KTX/TIM/KTX_TIM_TimeBase.h"

namespace KTX::TIM {

char const* timeBaseToString(TimeBaseE timeBase) {
  switch (timeBase) {
    case TIMEBASE_INV:
      return "TIMEBASE_INV";
    case TIMEBASE_GPS:
      return "TIMEBASE_GPS";
    case TIMEBASE_UTC:
      return "TIMEBASE_UTC";
    case TIMEBASE_LOCAL:
      return "TIMEBASE_LOCAL";
  }
  return "UNKNOWN";
}

}  // namespace KTX::TIM
