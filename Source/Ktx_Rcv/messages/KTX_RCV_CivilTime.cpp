#include "KTX/RCV/KTX_RCV_CivilTime.h"

namespace KTX::RCV {
namespace {

constexpr std::int64_t MS_PER_DAY = 86400000;
constexpr std::int64_t DAYS_PER_ERA = 146097;

bool isLeapYear(std::int32_t year) {
  return (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
}

}  // namespace

bool isDate(std::int32_t year, std::int32_t month, std::int32_t day) {
  static constexpr std::int32_t LENGTHS[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  if (year < 1900 || year > 9999 || month < 1 || month > 12 || day < 1) {
    return false;
  }
  std::int32_t const extra = month == 2 && isLeapYear(year) ? 1 : 0;
  return day <= LENGTHS[month - 1] + extra;
}

std::int64_t daysSince1970(std::int32_t year, std::int32_t month, std::int32_t day) {
  // Years begin in March here, so that the leap day is the last of its year.
  std::int64_t const y = month < 3 ? year - 1 : year;
  std::int64_t const monthFromMarch = (month + 9) % 12;
  std::int64_t const dayOfYear = (153 * monthFromMarch + 2) / 5 + day - 1;
  return y * 365 + y / 4 - y / 100 + y / 400 + dayOfYear - 719468;
}

std::int64_t secondsSince1970(CivilTimeC const& time) {
  return daysSince1970(time.year, time.month, time.day) * 86400 + std::int64_t{time.hour} * 3600 +
         std::int64_t{time.minute} * 60 + time.second;
}

CivilTimeC civilTimeOf(std::int64_t unixMs) {
  std::int64_t days = unixMs / MS_PER_DAY;
  std::int64_t msOfDay = unixMs % MS_PER_DAY;
  if (msOfDay < 0) {
    msOfDay += MS_PER_DAY;
    --days;
  }
  std::int64_t const z = days + 719468;
  std::int64_t const era = (z < 0 ? z - (DAYS_PER_ERA - 1) : z) / DAYS_PER_ERA;
  std::int64_t const dayOfEra = z - era * DAYS_PER_ERA;
  std::int64_t const yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  std::int64_t const dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  std::int64_t const monthFromMarch = (5 * dayOfYear + 2) / 153;
  CivilTimeC time;
  time.day = static_cast<std::int32_t>(dayOfYear - (153 * monthFromMarch + 2) / 5 + 1);
  time.month =
      static_cast<std::int32_t>(monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9);
  time.year = static_cast<std::int32_t>(yearOfEra + era * 400 + (time.month < 3 ? 1 : 0));
  time.hour = static_cast<std::int32_t>(msOfDay / 3600000);
  time.minute = static_cast<std::int32_t>(msOfDay / 60000 % 60);
  time.second = static_cast<std::int32_t>(msOfDay / 1000 % 60);
  time.nanosecond = static_cast<std::int32_t>(msOfDay % 1000 * 1000000);
  return time;
}

}  // namespace KTX::RCV
