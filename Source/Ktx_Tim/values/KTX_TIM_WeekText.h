#ifndef KTX_TIM_WEEKTEXT_H
#define KTX_TIM_WEEKTEXT_H

#include "KTX/TIM/KTX_TIM_GpsTimeValue.h"
#include "values/KTX_TIM_TextBuffer.h"

namespace KTX::TIM {

/// Appends "week: ", the week, " msec: " and the milliseconds of week.
inline void appendWeek(TextBufferC& text, GPSTimeC const& time) {
  text.append("week: ");
  text.appendNumber(time.getWeek());
  text.append(" msec: ");
  text.appendNumber(time.getMsOfWeek());
}

}  // namespace KTX::TIM

#endif  // KTX_TIM_WEEKTEXT_H
