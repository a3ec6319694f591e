#include "commands/TimeForm.h"

#include <array>
#include <charconv>
#include <cmath>
#include <system_error>

#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_TimeConstants.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "output/TextFormat.h"
#include "readers/CivilTime.h"
#include "readers/IsoTime.h"
#include "readers/TextNumber.h"
#include "replay/TimeConversion.h"

namespace KTX::VORTIME {
namespace {

constexpr std::int64_t FIRST_UNIX_MS = 315964800000;  // 1980-01-06
constexpr std::int64_t WEEKS = 65536;
constexpr std::int64_t MS_PER_WEEK = TIM::MS_PER_WEEK;
constexpr std::int64_t MAX_UNIX_S = 100000000000;

TIM::TimeBaseE usualBase(TimeFormatE format) {
  switch (format) {
    case TIMEFORMAT_WEEK:
      return TIM::TIMEBASE_GPS;
    case TIMEFORMAT_FAT:
      return TIM::TIMEBASE_LOCAL;
    default:
      return TIM::TIMEBASE_UTC;
  }
}

bool readFormat(std::string_view text, TimeFormatE& format) {
  static constexpr std::array<std::string_view, 6> NAMES = {"auto", "week", "iso",
                                                            "mjd",  "fat",  "unix"};
  for (std::size_t i = 0; i < NAMES.size(); ++i) {
    if (text == NAMES[i]) {
      format = static_cast<TimeFormatE>(i);
      return true;
    }
  }
  return false;
}

bool readBase(std::string_view text, TIM::TimeBaseE& base) {
  static constexpr std::array<std::string_view, 3> NAMES = {"gps", "utc", "local"};
  for (std::size_t i = 0; i < NAMES.size(); ++i) {
    if (text == NAMES[i]) {
      base = static_cast<TIM::TimeBaseE>(i);
      return true;
    }
  }
  return false;
}

bool setFromMs(std::int64_t msSinceEpoch, TIM::TimeBaseE base, TIM::GpsTimeC& time) {
  if (msSinceEpoch < 0 || msSinceEpoch >= WEEKS * MS_PER_WEEK) {
    return false;
  }
  time = TIM::GPSTimeC(static_cast<std::uint16_t>(msSinceEpoch / MS_PER_WEEK),
                       static_cast<std::uint32_t>(msSinceEpoch % MS_PER_WEEK));
  time.setTimeBase(base);
  return true;
}

bool readWeek(std::string_view text, TIM::TimeBaseE base, TIM::GpsTimeC& time) {
  std::size_t const colon = text.find(':');
  std::int64_t week = 0;
  std::int64_t ms = 0;
  return colon != std::string_view::npos && readDigits(text.substr(0, colon), week) &&
         readDigits(text.substr(colon + 1), ms) && week < WEEKS && ms < MS_PER_WEEK &&
         setFromMs(week * MS_PER_WEEK + ms, base, time);
}

bool readIso(std::string_view text, TIM::TimeBaseE base, TIM::GpsTimeC& time) {
  CivilTimeC civil;
  std::size_t const end = readIsoTime(text, civil);
  bool const isMarkedUtc = end + 1 == text.size() && text[end] == 'Z';
  if (end == 0 || (end != text.size() && !(isMarkedUtc && base == TIM::TIMEBASE_UTC))) {
    return false;
  }
  std::int64_t const days = daysSince1970(civil.year, civil.month, civil.day);
  std::int64_t const unixMs = days * 86400000 + civil.hour * 3600000LL + civil.minute * 60000LL +
                              civil.second * 1000LL + (civil.nanosecond + 500000) / 1000000;
  return setFromMs(unixMs - FIRST_UNIX_MS, base, time);
}

bool readMjd(std::string_view text, TIM::TimeBaseE base, TIM::GpsTimeC& time) {
  double day = 0;
  auto const result = std::from_chars(text.data(), text.data() + text.size(), day);
  if (result.ec != std::errc() || result.ptr != text.data() + text.size() ||
      !(day >= TIM::GPS_EPOCH_MJD && day < TIM::GPS_EPOCH_MJD + 7.0 * WEEKS - 1)) {
    return false;
  }
  time = TIM::GpsTimeC(TIM::MjdTimeC(day, base));
  return true;
}

bool readWord(std::string_view text, std::uint16_t& word) {
  bool const isHex = text.substr(0, 2) == "0x";
  text.remove_prefix(isHex ? 2 : 0);
  auto const result =
      std::from_chars(text.data(), text.data() + text.size(), word, isHex ? 16 : 10);
  return !text.empty() && result.ec == std::errc() && result.ptr == text.data() + text.size();
}

bool readFat(std::string_view text, TIM::TimeBaseE base, TIM::GpsTimeC& time) {
  std::size_t const colon = text.find(':');
  std::uint16_t date = 0;
  std::uint16_t clock = 0;
  if (colon == std::string_view::npos || !readWord(text.substr(0, colon), date) ||
      !readWord(text.substr(colon + 1), clock)) {
    return false;
  }
  TIM::YmdhmsC const calendar(clock, date);
  if (!isDate(calendar.year, calendar.month, calendar.day) || calendar.hour > 23 ||
      calendar.minute > 59 || calendar.second > 59) {
    return false;
  }
  return setFromMs(unixMsOf(calendar) - FIRST_UNIX_MS, base, time);
}

bool readUnix(std::string_view text, TIM::TimeBaseE base, TIM::GpsTimeC& time) {
  std::size_t const point = text.find('.');
  std::int64_t seconds = 0;
  std::int32_t nanoseconds = 0;
  if (!readDigits(text.substr(0, point), seconds) || seconds > MAX_UNIX_S ||
      (point != std::string_view::npos && !readFraction(text.substr(point + 1), nanoseconds))) {
    return false;
  }
  return setFromMs(seconds * 1000 + (nanoseconds + 500000) / 1000000 - FIRST_UNIX_MS, base, time);
}

// A date by its hyphens, a week by its colon, a day number by its size, else seconds since 1970.
TimeFormatE formatOf(std::string_view text) {
  if (text.size() > 7 && text[4] == '-') {
    return TIMEFORMAT_ISO;
  }
  if (text.find(':') != std::string_view::npos) {
    return text.substr(0, 2) == "0x" ? TIMEFORMAT_FAT : TIMEFORMAT_WEEK;
  }
  std::size_t const whole = text.substr(0, text.find('.')).size();
  return whole <= 6 ? TIMEFORMAT_MJD : TIMEFORMAT_UNIX;
}

TIM::YmdhmsC calendarOf(TIM::GpsTimeC const& time) {
  return {TIM::MjdTimeC(time), 1};
}

void appendFat(std::string& text, TIM::GpsTimeC const& time) {
  std::uint16_t clock = 0;
  std::uint16_t date = 0;
  calendarOf(time).toFatDateTime(clock, date);
  static constexpr char HEX[] = "0123456789ABCDEF";
  for (std::uint16_t const word : {date, clock}) {
    text += "0x";
    for (unsigned shift = 16; shift > 0; shift -= 4) {
      text += HEX[static_cast<unsigned>(word) >> (shift - 4) & 0xFU];
    }
    text += ':';
  }
  text.pop_back();
}

void appendUnix(std::string& text, TIM::GpsTimeC const& time) {
  std::int64_t const unixMs = FIRST_UNIX_MS + static_cast<std::int64_t>(time.toMilliseconds64());
  appendSigned(text, unixMs / 1000);
  if (unixMs % 1000 != 0) {
    text += '.';
    appendUnsigned(text, static_cast<std::uint64_t>(unixMs % 1000), 3);
  }
}

}  // namespace

bool readTimeFormSpec(std::string_view text, TimeFormSpecC& spec) {
  std::size_t const colon = text.find(':');
  std::string_view const format = text.substr(0, colon);
  spec = TimeFormSpecC();
  if (colon == std::string_view::npos && readBase(format, spec.base)) {
    spec.format = spec.base == TIM::TIMEBASE_GPS ? TIMEFORMAT_WEEK : TIMEFORMAT_ISO;
    return true;
  }
  return readFormat(format, spec.format) &&
         (colon == std::string_view::npos || readBase(text.substr(colon + 1), spec.base));
}

bool readTime(std::string_view text, TimeFormSpecC const& spec, TIM::GpsTimeC& time) {
  TimeFormatE const format = spec.format == TIMEFORMAT_AUTOMATIC ? formatOf(text) : spec.format;
  TIM::TimeBaseE const base = spec.base == TIM::TIMEBASE_INV ? usualBase(format) : spec.base;
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

TIM::GpsTimeC inBase(TIM::GpsTimeC const& time, TIM::TimeBaseE base) {
  TIM::GpsTimeC result(time);
  if (time.getTimeBase() == base) {
    return result;
  }
  if (time.getTimeBase() == TIM::TIMEBASE_GPS && base == TIM::TIMEBASE_UTC) {
    result.gpsToUtc();
  } else if (time.getTimeBase() == TIM::TIMEBASE_UTC && base == TIM::TIMEBASE_GPS) {
    result.utcToGps();
  } else {
    TIM::MjdTimeC day(time);
    day.convertTo(base);
    return TIM::GpsTimeC(day);
  }
  result.setTimeBase(base);
  return result;
}

void appendTime(std::string& text, TIM::GpsTimeC const& time, TimeFormSpecC const& spec) {
  TIM::TimeBaseE const base = spec.base == TIM::TIMEBASE_INV ? usualBase(spec.format) : spec.base;
  TIM::GpsTimeC const shown = inBase(time, base);
  switch (spec.format) {
    case TIMEFORMAT_WEEK:
      appendUnsigned(text, shown.getWeek());
      text += ':';
      appendUnsigned(text, shown.getMsOfWeek());
      break;
    case TIMEFORMAT_MJD:
      appendShortest(text, TIM::MjdTimeC(shown).getDayNumber());
      break;
    case TIMEFORMAT_FAT:
      appendFat(text, shown);
      break;
    case TIMEFORMAT_UNIX:
      appendUnix(text, shown);
      break;
    default:
      appendCalendar(text, calendarOf(shown));
      text += base == TIM::TIMEBASE_UTC ? "Z" : "";
  }
}

}  // namespace KTX::VORTIME
