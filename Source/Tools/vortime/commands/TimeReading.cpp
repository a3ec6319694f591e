#include "commands/TimeReading.h"

#include <charconv>
#include <cmath>
#include <cstdint>
#include <system_error>

#include "KTX/RCV/KTX_RCV_CivilTime.h"
#include "KTX/RCV/KTX_RCV_IsoTime.h"
#include "KTX/RCV/KTX_RCV_TextNumber.h"
#include "KTX/RCV/KTX_RCV_TimeConversion.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_TimeConstants.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace KTX::VORTIME {
namespace {

constexpr std::int32_t FIRST_YEAR = 1980;
constexpr std::int64_t WEEKS = 65536;
constexpr std::int64_t MS_PER_WEEK = TIM::MS_PER_WEEK;
constexpr std::int64_t MAX_UNIX_S = 100000000000;

constexpr std::size_t DATE_LENGTH = 10;  // 2017-01-01

constexpr char const* NOT_A_TIME = "not a time";

// Null, or the static text that says why a text is no time.
using ResultT = char const*;

ResultT setFromMs(std::int64_t msSinceEpoch, TIM::TimeBaseE base, TIM::GpsTimeC& time) {
  if (msSinceEpoch < 0 || msSinceEpoch >= WEEKS * MS_PER_WEEK) {
    return outOfWeeksText(msSinceEpoch < 0);
  }
  time = TIM::GPSTimeC(static_cast<std::uint16_t>(msSinceEpoch / MS_PER_WEEK),
                       static_cast<std::uint32_t>(msSinceEpoch % MS_PER_WEEK));
  time.setTimeBase(base);
  return nullptr;
}

bool isAllDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

bool isInteger(std::string_view text) {
  return isAllDigits(text.substr(text.substr(0, 1) == "-" ? 1 : 0));
}

// True for a text such as 10000-01-01.
bool beginsWithLongYear(std::string_view text) {
  std::size_t const hyphen = text.find('-');
  return hyphen != std::string_view::npos && hyphen > 4 && isAllDigits(text.substr(0, hyphen));
}

ResultT readWeek(std::string_view text, TIM::TimeBaseE base, TIM::GpsTimeC& time) {
  std::size_t const colon = text.find(':');
  if (colon == std::string_view::npos) {
    return NOT_A_TIME;
  }
  std::string_view const weekText = text.substr(0, colon);
  std::string_view const msText = text.substr(colon + 1);
  if (msText.find(':') != std::string_view::npos) {
    return "a time of day needs its date in front";
  }
  if (!isInteger(weekText) || !isInteger(msText)) {
    return NOT_A_TIME;
  }
  std::int64_t week = 0;
  std::int64_t ms = 0;
  if (!RCV::readDigits(weekText, week) || week >= WEEKS) {
    return "weeks are 0 to 65535";
  }
  if (!RCV::readDigits(msText, ms) || ms >= MS_PER_WEEK) {
    return "milliseconds of a week are 0 to 604799999";
  }
  return setFromMs(week * MS_PER_WEEK + ms, base, time);
}

// What is wrong with the fields of a date and time of day.
ResultT checkFields(RCV::CivilTimeC const& civil) {
  if (civil.year < FIRST_YEAR) {
    return outOfWeeksText(true);
  }
  if (!RCV::isDate(civil.year, civil.month, civil.day)) {
    return "no such date";
  }
  if (civil.second == 60) {
    return "second 60, a leap second, cannot be converted";
  }
  return civil.hour > 23 || civil.minute > 59 || civil.second > 59 ? "no such time of day"
                                                                   : nullptr;
}

// What is wrong with the text behind a time of day.
ResultT checkEnd(std::string_view rest, TIM::TimeBaseE base) {
  if (rest.empty() || (rest == "Z" && base == TIM::TIMEBASE_UTC)) {
    return nullptr;
  }
  if (rest == "Z") {
    return "Z marks UTC, and another time base was asked for";
  }
  return rest[0] == '+' || rest[0] == '-' ? "offsets from UTC are not read, only Z is" : NOT_A_TIME;
}

ResultT readIso(std::string_view text, TIM::TimeBaseE base, TIM::GpsTimeC& time) {
  RCV::CivilTimeC civil;
  std::size_t const end = RCV::readIsoFields(text, civil);
  if (end == 0 && beginsWithLongYear(text)) {
    return "a year has four digits";
  }
  if (end == 0) {
    return text.size() == DATE_LENGTH ? "a date needs its time of day behind it" : NOT_A_TIME;
  }
  if (ResultT const wrong = checkFields(civil)) {
    return wrong;
  }
  if (ResultT const wrong = checkEnd(text.substr(end), base)) {
    return wrong;
  }
  std::int64_t const days = RCV::daysSince1970(civil.year, civil.month, civil.day);
  std::int64_t const unixMs = days * 86400000 + civil.hour * 3600000LL + civil.minute * 60000LL +
                              civil.second * 1000LL + (civil.nanosecond + 500000) / 1000000;
  return setFromMs(unixMs - GPS_EPOCH_UNIX_MS, base, time);
}

ResultT readMjd(std::string_view text, TIM::TimeBaseE base, TIM::GpsTimeC& time) {
  double day = 0;
  auto const result = std::from_chars(text.data(), text.data() + text.size(), day);
  if (result.ec == std::errc::result_out_of_range) {
    return outOfWeeksText(text[0] == '-');
  }
  if (result.ec != std::errc() || result.ptr != text.data() + text.size() || std::isnan(day)) {
    return NOT_A_TIME;
  }
  if (!(day >= TIM::GPS_EPOCH_MJD && day < TIM::GPS_EPOCH_MJD + 7.0 * WEEKS - 1)) {
    return outOfWeeksText(day < TIM::GPS_EPOCH_MJD);
  }
  time = TIM::GpsTimeC(TIM::MjdTimeC(day, base));
  return nullptr;
}

bool readWord(std::string_view text, std::uint16_t& word) {
  bool const isHex = text.substr(0, 2) == "0x";
  text.remove_prefix(isHex ? 2 : 0);
  auto const result =
      std::from_chars(text.data(), text.data() + text.size(), word, isHex ? 16 : 10);
  return !text.empty() && result.ec == std::errc() && result.ptr == text.data() + text.size();
}

ResultT readFat(std::string_view text, TIM::TimeBaseE base, TIM::GpsTimeC& time) {
  std::size_t const colon = text.find(':');
  std::uint16_t date = 0;
  std::uint16_t clock = 0;
  if (colon == std::string_view::npos || !readWord(text.substr(0, colon), date) ||
      !readWord(text.substr(colon + 1), clock)) {
    return "not two numbers of 16 bits with a colon between";
  }
  TIM::YmdhmsC const calendar(clock, date);
  if (!RCV::isDate(calendar.year, calendar.month, calendar.day)) {
    return "no such date";
  }
  if (calendar.hour > 23 || calendar.minute > 59 || calendar.second > 59) {
    return "no such time of day";
  }
  return setFromMs(RCV::unixMsOf(calendar) - GPS_EPOCH_UNIX_MS, base, time);
}

ResultT readUnix(std::string_view text, TIM::TimeBaseE base, TIM::GpsTimeC& time) {
  std::size_t const point = text.find('.');
  std::string_view const whole = text.substr(0, point);
  bool const isNegative = whole.substr(0, 1) == "-";
  std::int32_t nanoseconds = 0;
  if (!isAllDigits(whole.substr(isNegative ? 1 : 0)) ||
      (point != std::string_view::npos &&
       !RCV::readFraction(text.substr(point + 1), nanoseconds))) {
    return NOT_A_TIME;
  }
  std::int64_t seconds = 0;
  if (isNegative || !RCV::readDigits(whole, seconds) || seconds > MAX_UNIX_S) {
    return outOfWeeksText(isNegative);
  }
  return setFromMs(seconds * 1000 + (nanoseconds + 500000) / 1000000 - GPS_EPOCH_UNIX_MS, base,
                   time);
}

// A date by its hyphens, a week by its colon, a day number by its size, else seconds since 1970.
TimeFormatE formatOf(std::string_view text) {
  if ((text.size() > 7 && text[4] == '-') || beginsWithLongYear(text)) {
    return TIMEFORMAT_ISO;
  }
  if (text.find(':') != std::string_view::npos) {
    return text.substr(0, 2) == "0x" ? TIMEFORMAT_FAT : TIMEFORMAT_WEEK;
  }
  std::size_t const whole = text.substr(0, text.find('.')).size();
  return whole <= 6 ? TIMEFORMAT_MJD : TIMEFORMAT_UNIX;
}

ResultT readAs(TimeFormatE format,
               std::string_view text,
               TIM::TimeBaseE base,
               TIM::GpsTimeC& time) {
  switch (format) {
    case TIMEFORMAT_WEEK:
      return readWeek(text, base, time);
    case TIMEFORMAT_ISO:
      return readIso(text, base, time);
    case TIMEFORMAT_MJD:
      return readMjd(text, base, time);
    case TIMEFORMAT_FAT:
      return readFat(text, base, time);
    default:
      return readUnix(text, base, time);
  }
}

}  // namespace

bool readTime(std::string_view text,
              TimeFormSpecC const& spec,
              TIM::GpsTimeC& time,
              std::string& reason) {
  TimeFormatE const format = spec.format == TIMEFORMAT_AUTOMATIC ? formatOf(text) : spec.format;
  TIM::TimeBaseE const base = spec.base == TIM::TIMEBASE_INV ? usualTimeBase(format) : spec.base;
  ResultT const wrong = readAs(format, text, base, time);
  if (wrong != nullptr) {
    reason = wrong;
  }
  return wrong == nullptr;
}

}  // namespace KTX::VORTIME
