#ifndef KTX_TIM_CALENDARFIELDS_H
#define KTX_TIM_CALENDARFIELDS_H

#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "values/KTX_TIM_CalendarSplit.h"

namespace KTX::TIM {

/// The fields that tell the instant of a calendar value.
inline JoinedFieldsC fieldsOf(YmdhmsC const& time) {
  return {time.year,
          time.month,
          time.day,
          time.hour,
          time.minute,
          time.second,
          time.effectiveMilliseconds()};
}

/// Sets all fields but precision and time base.
inline void setFields(YmdhmsC& time, CalendarFieldsC const& fields) {
  time.year = fields.year;
  time.month = fields.month;
  time.day = fields.day;
  time.hour = fields.hour;
  time.minute = fields.minute;
  time.second = fields.second;
  time.hundredths = static_cast<std::uint8_t>(fields.milliseconds / 10);
  time.dayOfWeek = fields.dayOfWeek;
  time.milliseconds = fields.milliseconds;
}

}  // namespace KTX::TIM

#endif  // KTX_TIM_CALENDARFIELDS_H
