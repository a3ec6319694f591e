#include "commands/TimeForm.h"

#include <array>
#include <cstddef>

#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_TimeConstants.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "output/TextFormat.h"

namespace KTX::VORTIME {
namespace {

constexpr std::int64_t MS_PER_WEEK = TIM::MS_PER_WEEK;
constexpr std::uint16_t LAST_FAT_YEAR = 2107;

constexpr std::array<char const*, 3> BASE_NAMES = {"GPS time", "UTC", "local time"};

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

std::int64_t msSinceEpoch(TIM::GpsTimeC const& time) {
  return static_cast<std::int64_t>(time.toMilliseconds64());
}

TIM::YmdhmsC calendarOf(TIM::GpsTimeC const& time) {
  return {TIM::MjdTimeC(time), 1};
}

bool appendFat(std::string& text, TIM::GpsTimeC const& time, std::string& reason) {
  TIM::YmdhmsC const calendar = calendarOf(time);
  if (calendar.year > LAST_FAT_YEAR) {
    reason = "FAT ends with the year " + std::to_string(LAST_FAT_YEAR);
    return false;
  }
  std::uint16_t clock = 0;
  std::uint16_t date = 0;
  calendar.toFatDateTime(clock, date);
  static constexpr char HEX[] = "0123456789ABCDEF";
  for (std::uint16_t const word : {date, clock}) {
    text += "0x";
    for (unsigned shift = 16; shift > 0; shift -= 4) {
      text += HEX[static_cast<unsigned>(word) >> (shift - 4) & 0xFU];
    }
    text += ':';
  }
  text.pop_back();
  return true;
}

void appendUnix(std::string& text, TIM::GpsTimeC const& time) {
  std::int64_t const unixMs = GPS_EPOCH_UNIX_MS + msSinceEpoch(time);
  appendSigned(text, unixMs / 1000);
  if (unixMs % 1000 != 0) {
    text += '.';
    appendUnsigned(text, static_cast<std::uint64_t>(unixMs % 1000), 3);
  }
}

TIM::GpsTimeC convertedTo(TIM::GpsTimeC const& time, TIM::TimeBaseE base) {
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

}  // namespace

TIM::TimeBaseE usualTimeBase(TimeFormatE format) {
  switch (format) {
    case TIMEFORMAT_WEEK:
      return TIM::TIMEBASE_GPS;
    case TIMEFORMAT_FAT:
      return TIM::TIMEBASE_LOCAL;
    default:
      return TIM::TIMEBASE_UTC;
  }
}

char const* outOfWeeksText(bool isBefore) {
  return isBefore ? "it lies before 1980-01-06T00:00:00, where week 0 begins"
                  : "it lies after the end of week 65535, the last one";
}

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

bool inBase(TIM::GpsTimeC const& time,
            TIM::TimeBaseE base,
            TIM::GpsTimeC& result,
            std::string& reason) {
  TIM::GpsTimeC const converted = convertedTo(time, base);
  // The library's conversions wrap round at both ends of the weeks.
  std::int64_t const changeMs = msSinceEpoch(converted) - msSinceEpoch(time);
  if (changeMs < -MS_PER_WEEK || changeMs > MS_PER_WEEK) {
    reason = std::string("in ") + BASE_NAMES.at(static_cast<std::size_t>(base)) + ' ' +
             outOfWeeksText(changeMs > 0);
    return false;
  }
  result = converted;
  return true;
}

bool appendTime(std::string& text,
                TIM::GpsTimeC const& time,
                TimeFormSpecC const& spec,
                std::string& reason) {
  TIM::TimeBaseE const base =
      spec.base == TIM::TIMEBASE_INV ? usualTimeBase(spec.format) : spec.base;
  TIM::GpsTimeC shown;
  if (!inBase(time, base, shown, reason)) {
    return false;
  }
  switch (spec.format) {
    case TIMEFORMAT_WEEK:
      appendUnsigned(text, shown.getWeek());
      text += ':';
      appendUnsigned(text, shown.getMsOfWeek());
      return true;
    case TIMEFORMAT_MJD:
      appendShortest(text, TIM::MjdTimeC(shown).getDayNumber());
      return true;
    case TIMEFORMAT_FAT:
      return appendFat(text, shown, reason);
    case TIMEFORMAT_UNIX:
      appendUnix(text, shown);
      return true;
    default:
      appendCalendar(text, calendarOf(shown));
      text += base == TIM::TIMEBASE_UTC ? "Z" : "";
      return true;
  }
}

}  // namespace KTX::VORTIME
