#include "leapseconds/KTX_TIM_GpsCalendar.h"

#include <boost/date_time/gregorian/gregorian_types.hpp>
#include <boost/date_time/posix_time/posix_time_types.hpp>

#include "KTX/TIM/KTX_TIM_TimeConstants.h"

namespace KTX::TIM {
namespace {

boost::posix_time::ptime calendarTime(std::uint64_t gpsMs) {
  boost::gregorian::date const epoch(1980, 1, 6);
  return {epoch + boost::gregorian::days(static_cast<int>(gpsMs / MS_PER_DAY)),
          boost::posix_time::milliseconds(gpsMs % MS_PER_DAY)};
}

}  // namespace

CalendarDateC calendarDate(std::uint64_t gpsMs) {
  auto const date = calendarTime(gpsMs).date().year_month_day();
  return {date.year, date.month, date.day};
}

bool isBeyondMonths(std::uint64_t gpsMs, std::uint64_t nowGpsMs, int months) {
  return calendarTime(nowGpsMs) + boost::gregorian::months(months) < calendarTime(gpsMs);
}

}  // namespace KTX::TIM
