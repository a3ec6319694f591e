#ifndef KTX_TIM_CALENDARSPLIT_H
#define KTX_TIM_CALENDARSPLIT_H

#include <cstdint>

namespace KTX::TIM {

/// A date and time of day without a time base.
struct CalendarFieldsC {
  std::uint16_t year;
  std::uint8_t month;
  std::uint8_t day;
  std::uint8_t hour;
  std::uint8_t minute;
  std::uint8_t second;
  std::uint8_t dayOfWeek;      ///< 1 to 7, Sunday is 1
  std::uint16_t milliseconds;  ///< of the second
};

/// Splits a Modified Julian Date. The time of day is rounded half away from zero to hundredths
/// (precision 0) or milliseconds (any other), and carries into the date. 0, a negative number and
/// not-a-number give all zeros; a result past 9999-12-31 throws boost::gregorian::bad_year.
CalendarFieldsC splitDayNumber(double dayNumber, std::uint32_t precision);

/// The Modified Julian Date of a date and time of day, whatever the fields hold.
double joinDayNumber(std::uint16_t year,
                     std::uint8_t month,
                     std::uint8_t day,
                     std::uint8_t hour,
                     std::uint8_t minute,
                     std::uint8_t second,
                     std::int64_t milliseconds);

}  // namespace KTX::TIM

#endif  // KTX_TIM_CALENDARSPLIT_H
