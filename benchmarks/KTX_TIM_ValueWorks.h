#ifndef KTX_TIM_VALUEWORKS_H
#define KTX_TIM_VALUEWORKS_H

#include <cstddef>
#include <cstdint>
#include <istream>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"
#include "KTX_TIM_OneTextBuffer.h"

// Conversions and texts that run for each observation.
namespace KTX::TIM::BENCH {

struct WeekC {
  std::uint16_t week;
  std::uint32_t msOfWeek;
};

/// What a conversion to UTC yields, and what one from UTC starts from.
struct FieldsC {
  int year;
  int month;
  int day;
  int hour;
  int minute;
  int second;
  int milliseconds;
};

inline bool operator==(FieldsC const& a, FieldsC const& b) {
  return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour &&
         a.minute == b.minute && a.second == b.second && a.milliseconds == b.milliseconds;
}

constexpr std::size_t INPUTS = 1024;

/// Instants from 2018 to 2045 in hundredths of a second, which every library here can hold, in no
/// order that a branch predictor could learn.
inline std::vector<WeekC> const& weeks() {
  static std::vector<WeekC> const inputs = [] {
    std::vector<WeekC> values;
    std::uint64_t state = 88172645463325252U;
    for (std::size_t i = 0; i < INPUTS; ++i) {
      state ^= state << 13;
      state ^= state >> 7;
      state ^= state << 17;
      values.push_back({static_cast<std::uint16_t>(2000 + state % 1400),
                        static_cast<std::uint32_t>((state >> 20) % 60480000 * 10)});
    }
    return values;
  }();
  return inputs;
}

// GPS week and milliseconds to UTC calendar fields.

inline FieldsC toUtcVorTime(WeekC const& input) {
  GpsTimeC time(GPSTimeC(input.week, input.msOfWeek));
  time.gpsToUtc();
  time.setTimeBase(TIMEBASE_UTC);
  YmdhmsC const utc(time);
  return {utc.year,
          utc.month,
          utc.day,
          utc.hour,
          utc.minute,
          utc.second,
          static_cast<int>(utc.milliseconds)};
}

template <class LoopT, class ConversionT>
void convertToUtc(LoopT& loop, ConversionT const& conversion) {
  for (auto const& input : weeks()) {
    if (!(conversion(input) == toUtcVorTime(input))) {
      loop.SkipWithError("a result differs");
    }
  }
  std::size_t i = 0;
  for (auto _ : loop) {
    FieldsC const fields = conversion(weeks()[i++ % INPUTS]);
    benchmark::DoNotOptimize(fields);
  }
}

template <class LoopT>
void convertGpsToUtcCalendar(LoopT& loop) {
  convertToUtc(loop, toUtcVorTime);
}

// UTC calendar fields to GPS week and milliseconds.

inline YmdhmsC const BLANK = YmdhmsC::zero(TIMEBASE_UTC, 1);

inline WeekC toGpsVorTime(FieldsC const& input) {
  YmdhmsC utc = BLANK;
  utc.year = static_cast<std::uint16_t>(input.year);
  utc.month = static_cast<std::uint8_t>(input.month);
  utc.day = static_cast<std::uint8_t>(input.day);
  utc.hour = static_cast<std::uint8_t>(input.hour);
  utc.minute = static_cast<std::uint8_t>(input.minute);
  utc.second = static_cast<std::uint8_t>(input.second);
  utc.hundredths = static_cast<std::uint8_t>(input.milliseconds / 10);
  utc.milliseconds = input.milliseconds;
  GpsTimeC time(utc);
  time.utcToGps();
  return {time.getWeek(), time.getMsOfWeek()};
}

inline std::vector<FieldsC> const& calendars() {
  static std::vector<FieldsC> const inputs = [] {
    std::vector<FieldsC> values;
    for (auto const& input : weeks()) {
      values.push_back(toUtcVorTime(input));
    }
    return values;
  }();
  return inputs;
}

template <class LoopT, class ConversionT>
void convertToGps(LoopT& loop, ConversionT const& conversion) {
  for (std::size_t i = 0; i < INPUTS; ++i) {
    WeekC const result = conversion(calendars()[i]);
    if (result.week != weeks()[i].week || result.msOfWeek != weeks()[i].msOfWeek) {
      loop.SkipWithError("a result differs");
    }
  }
  std::size_t i = 0;
  for (auto _ : loop) {
    WeekC const result = conversion(calendars()[i++ % INPUTS]);
    benchmark::DoNotOptimize(result);
  }
}

template <class LoopT>
void convertUtcCalendarToGps(LoopT& loop) {
  convertToGps(loop, toGpsVorTime);
}

// ISO text, of one value a call, into a stream over one buffer and out of one.

inline std::vector<YmdhmsC> utcCalendars() {
  std::vector<YmdhmsC> values;
  for (auto const& input : weeks()) {
    YmdhmsC value{GPSTimeC(input.week, input.msOfWeek)};
    value.toUtc();
    values.push_back(value);
  }
  return values;
}

inline std::vector<std::string> isoTexts() {
  std::vector<std::string> texts;
  for (auto const& value : utcCalendars()) {
    std::ostringstream stream;
    stream << value;
    texts.push_back(stream.str());
  }
  return texts;
}

template <class LoopT>
void writeIsoText(LoopT& loop) {
  auto const inputs = utcCalendars();
  OneTextBufferC buffer;
  std::ostream stream(&buffer);
  std::size_t i = 0;
  for (auto _ : loop) {
    buffer.rewindForOutput();
    stream << inputs[i++ % INPUTS];
    benchmark::DoNotOptimize(buffer.data());
  }
}

template <class LoopT>
void readIsoText(LoopT& loop) {
  auto const inputs = isoTexts();
  OneTextBufferC buffer;
  std::istream stream(&buffer);
  YmdhmsC value = YmdhmsC::zero();
  std::size_t i = 0;
  for (auto _ : loop) {
    buffer.rewindForInput(inputs[i++ % INPUTS]);
    stream >> value;
    benchmark::DoNotOptimize(value);
  }
  if (!stream) {
    loop.SkipWithError("a text was not read");
  }
}

// Arithmetic.

template <class LoopT>
void addMilliseconds(LoopT& loop) {
  GPSTimeC time(2304, 0);
  std::size_t i = 0;
  for (auto _ : loop) {
    time += std::int64_t{weeks()[i++ % INPUTS].msOfWeek} - 302400000;
    benchmark::DoNotOptimize(time);
  }
}

template <class LoopT>
void convertGpsCalendarToUtcCalendar(LoopT& loop) {
  std::size_t i = 0;
  for (auto _ : loop) {
    auto const& input = weeks()[i++ % INPUTS];
    YmdhmsC value{GPSTimeC(input.week, input.msOfWeek)};
    value.toUtc();
    benchmark::DoNotOptimize(value);
  }
}

}  // namespace KTX::TIM::BENCH

#endif  // KTX_TIM_VALUEWORKS_H
