#ifndef KTX_TIM_GPSCALENDAR_H
#define KTX_TIM_GPSCALENDAR_H

#include <cstdint>

namespace KTX::TIM {

// Plain numbers only: a source file that sees both an exported class and the date library's
// exceptions makes GCC export the exceptions' type information from the Windows library.

/// A date of the Gregorian calendar.
struct CalendarDateC {
  std::uint16_t year;
  std::uint16_t month;
  std::uint16_t day;
};

/// The date of an instant in milliseconds since the GPS epoch, without leap seconds.
CalendarDateC calendarDate(std::uint64_t gpsMs);

/// True when an instant is later than now plus months; both in milliseconds since the GPS epoch,
/// without leap seconds. The last day of a month stays the last day of the month reached.
bool isBeyondMonths(std::uint64_t gpsMs, std::uint64_t nowGpsMs, int months);

}  // namespace KTX::TIM

#endif  // KTX_TIM_GPSCALENDAR_H
