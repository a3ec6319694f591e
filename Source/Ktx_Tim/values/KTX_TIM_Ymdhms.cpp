#include "KTX/TIM/KTX_TIM_Ymdhms.h"

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "values/KTX_TIM_CalendarFields.h"
#include "values/KTX_TIM_CalendarSplit.h"

namespace KTX::TIM {
namespace {

/// a + b for any arguments; what does not fit wraps.
std::int32_t wrappingSum(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}

}  // namespace

struct YmdhmsC::ZeroTag {};

YmdhmsC::YmdhmsC(ZeroTag /*tag*/, TimeBaseE base, std::uint32_t keptPrecision)
    : year(0),
      month(0),
      day(0),
      hour(0),
      minute(0),
      second(0),
      hundredths(0),
      dayOfWeek(0),
      milliseconds(0),
      precision(keptPrecision),
      timeBase(base) {}

YmdhmsC::YmdhmsC(GpsTimeC const& time) : YmdhmsC(ZeroTag{}, time.getTimeBase(), 0) {
  setFields(*this, splitWeekTime({time.getWeek(), time.getMsOfWeek()}, precision));
}

YmdhmsC::YmdhmsC(GPSTimeC const& time) : YmdhmsC(ZeroTag{}, TIMEBASE_GPS, 0) {
  setFields(*this, splitWeekTime({time.getWeek(), time.getMsOfWeek()}, precision));
}

YmdhmsC::YmdhmsC(MjdTimeC const& time, std::uint32_t keptPrecision)
    : YmdhmsC(ZeroTag{}, time.getTimeBase(), keptPrecision) {
  setFrom(time);
}

YmdhmsC::YmdhmsC(std::uint16_t fatTime, std::uint16_t fatDate)
    : YmdhmsC(ZeroTag{}, TIMEBASE_LOCAL, 0) {
  year = static_cast<std::uint16_t>((fatDate >> 9) + 1980);
  month = static_cast<std::uint8_t>((fatDate >> 5) & 15);
  day = static_cast<std::uint8_t>(fatDate & 31);
  hour = static_cast<std::uint8_t>(fatTime >> 11);
  minute = static_cast<std::uint8_t>((fatTime >> 5) & 63);
  second = static_cast<std::uint8_t>((fatTime & 31) * 2);
}

YmdhmsC::YmdhmsC(std::tm const* brokenDown) : YmdhmsC(ZeroTag{}, TIMEBASE_LOCAL, 0) {
  fromTm(brokenDown);
}

YmdhmsC YmdhmsC::zero(TimeBaseE timeBase, std::uint32_t precision) {
  return YmdhmsC(ZeroTag{}, timeBase, precision);
}

void YmdhmsC::setFrom(MjdTimeC const& time) {
  setFields(*this, splitDayNumber(time.getDayNumber(), precision));
  timeBase = time.getTimeBase();
}

void YmdhmsC::fromTm(std::tm const* brokenDown) {
  if (brokenDown == nullptr) {
    logAssertion("Broken-down time is null!");
    return;
  }
  year = static_cast<std::uint16_t>(wrappingSum(brokenDown->tm_year, 1900));
  month = static_cast<std::uint8_t>(wrappingSum(brokenDown->tm_mon, 1));
  day = static_cast<std::uint8_t>(brokenDown->tm_mday);
  hour = static_cast<std::uint8_t>(brokenDown->tm_hour);
  minute = static_cast<std::uint8_t>(brokenDown->tm_min);
  second = static_cast<std::uint8_t>(brokenDown->tm_sec);
  hundredths = 0;
  dayOfWeek = static_cast<std::uint8_t>(wrappingSum(brokenDown->tm_wday, 1));
  milliseconds = 0;
  precision = 0;
  timeBase = TIMEBASE_LOCAL;
}

void YmdhmsC::toTm(std::tm* brokenDown) const {
  if (brokenDown == nullptr) {
    logAssertion("Broken-down time is null!");
    return;
  }
  brokenDown->tm_year = year - 1900;
  brokenDown->tm_mon = month - 1;
  brokenDown->tm_mday = day;
  brokenDown->tm_hour = hour;
  brokenDown->tm_min = minute;
  brokenDown->tm_sec = second;
  brokenDown->tm_wday = dayOfWeek - 1;
  brokenDown->tm_yday = -1;
  brokenDown->tm_isdst = -1;
}

void YmdhmsC::toFatDateTime(std::uint16_t& fatTime, std::uint16_t& fatDate) const {
  YmdhmsC local(*this);
  if (local.timeBase == TIMEBASE_GPS) {
    local.toUtc();
  }
  if (local.timeBase == TIMEBASE_UTC) {
    local.utcToLocal();
  }
  auto const yearsAfter1980 = static_cast<std::uint32_t>(local.year - 1980);
  std::uint32_t const hours = local.hour;
  std::uint32_t const minutes = local.minute;
  std::uint32_t const seconds = local.second;
  std::uint32_t const months = local.month;
  std::uint32_t const days = local.day;
  fatTime = static_cast<std::uint16_t>(hours << 11 | minutes << 5 | seconds >> 1);
  fatDate = static_cast<std::uint16_t>(yearsAfter1980 << 9 | months << 5 | days);
}

std::uint8_t YmdhmsC::daysInMonth() const {
  switch (month) {
    case 1:
    case 3:
    case 5:
    case 7:
    case 8:
    case 10:
    case 12:
      return 31;
    case 2:
      return isLeapYear() ? 29 : 28;
    default:
      return 30;
  }
}

bool YmdhmsC::isLeapYear() const {
  return year % 400 == 0 || (year % 4 == 0 && year % 100 != 0);
}

bool YmdhmsC::isFractionConsistent() const {
  return milliseconds / 10 == hundredths;
}

std::int64_t YmdhmsC::effectiveMilliseconds() const {
  return isFractionConsistent() ? milliseconds : std::int64_t{hundredths} * 10;
}

void YmdhmsC::toUtc() {
  if (timeBase == TIMEBASE_GPS) {
    GpsTimeC time(*this);
    time.gpsToUtc();
    setFields(*this, splitWeekTime({time.getWeek(), time.getMsOfWeek()}, precision));
    timeBase = TIMEBASE_UTC;
  } else if (timeBase == TIMEBASE_LOCAL) {
    MjdTimeC time(*this);
    time.toUtc();
    setFrom(time);
  }
}

void YmdhmsC::toGps() {
  if (timeBase == TIMEBASE_UTC) {
    GpsTimeC time(*this);
    time.utcToGps();
    setFields(*this, splitWeekTime({time.getWeek(), time.getMsOfWeek()}, precision));
    timeBase = TIMEBASE_GPS;
  } else if (timeBase == TIMEBASE_LOCAL) {
    MjdTimeC time(*this);
    time.toGps();
    setFrom(time);
  }
}

void YmdhmsC::utcToLocal() {
  MjdTimeC time(*this);
  time.utcToLocal();
  setFrom(time);
}

void YmdhmsC::localToUtc() {
  MjdTimeC time(*this);
  time.localToUtc();
  setFrom(time);
}

bool YmdhmsC::operator==(YmdhmsC const& other) const {
  YmdhmsC same(other);
  if (same.timeBase != timeBase) {
    MjdTimeC time(other);
    if (time.convertTo(timeBase)) {
      same.setFrom(time);
    }
  }
  return effectiveMilliseconds() == same.effectiveMilliseconds() && day == same.day &&
         dayOfWeek == same.dayOfWeek && hour == same.hour && minute == same.minute &&
         month == same.month && second == same.second && year == same.year;
}

bool YmdhmsC::operator!=(YmdhmsC const& other) const {
  return !(*this == other);
}

}  // namespace KTX::TIM
