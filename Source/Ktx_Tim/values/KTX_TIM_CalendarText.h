#ifndef KTX_TIM_CALENDARTEXT_H
#define KTX_TIM_CALENDARTEXT_H

#include <string>

namespace KTX::TIM {

/// A Modified Julian Date as "2024-03-07 08:09:05:042000": rounded to milliseconds and printed in
/// microseconds. A day number of 0 or less gives "0000-00-00 00:00:00:000000"; one past 9999-12-31
/// throws boost::gregorian::bad_year.
std::string calendarText(double dayNumber);

}  // namespace KTX::TIM

#endif  // KTX_TIM_CALENDARTEXT_H
