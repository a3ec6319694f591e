#include "timezones/KTX_TIM_RegistryClock.h"

#include <boost/date_time/gregorian/gregorian_types.hpp>

namespace KTX::TIM::TEST {

namespace {

using boost::gregorian::date;
using boost::gregorian::days;

constexpr unsigned LAST_WEEK = 5;
constexpr std::int64_t SECONDS_PER_DAY = 86400;
constexpr std::int64_t SECONDS_PER_MINUTE = 60;

std::int64_t secondsTo(date const& day) {
  return (day - date(1970, 1, 1)).days() * SECONDS_PER_DAY;
}

date firstOf(std::int32_t year, unsigned month) {
  return {static_cast<unsigned short>(year), static_cast<unsigned short>(month), 1};
}

date dayOfRule(SystemTimeRecordC const& rule, std::int32_t year) {
  date const first = firstOf(year, rule.month);
  if (rule.day == LAST_WEEK) {
    date const last = first.end_of_month();
    return last - days((last.day_of_week().as_number() - rule.dayOfWeek + 7) % 7);
  }
  int const ahead = (rule.dayOfWeek - first.day_of_week().as_number() + 7) % 7;
  return first + days(ahead + 7 * (rule.day - 1));
}

// The rule's time is that of the clock before the change, which is at this offset.
std::int64_t momentOfRule(SystemTimeRecordC const& rule, std::int32_t year, std::int32_t before) {
  std::int64_t const minutes = rule.hour * 60 + rule.minute - before;
  return secondsTo(dayOfRule(rule, year)) + minutes * SECONDS_PER_MINUTE + rule.second;
}

}  // namespace

RegistryClockC::RegistryClockC(ZoneRecordC const& record, std::int32_t year)
    : standardOffset(-(record.bias + record.standardBias)),
      daylightOffset(-(record.bias + record.daylightBias)) {
  begin = secondsTo(firstOf(year, 1)) - standardOffset * SECONDS_PER_MINUTE;
  end = secondsTo(firstOf(year + 1, 1)) - standardOffset * SECONDS_PER_MINUTE;
  if (record.daylightDate.month != 0) {
    daylightBegin = momentOfRule(record.daylightDate, year, standardOffset);
    standardBegin = momentOfRule(record.standardDate, year, daylightOffset);
  }
}

std::int32_t RegistryClockC::offsetAt(std::int64_t utc) const {
  bool const isDaylight = daylightBegin <= standardBegin
                              ? utc >= daylightBegin && utc < standardBegin
                              : utc >= daylightBegin || utc < standardBegin;
  return isDaylight ? daylightOffset : standardOffset;
}

}  // namespace KTX::TIM::TEST
