// Conversions and texts that run for each observation, beside other libraries on the same instants.
//
// "date" knows leap seconds, "date_without_leap_seconds" and "absl" do not; "erfa" does.
#include <absl/strings/string_view.h>
#include <absl/time/time.h>
#include <array>
#include <cstdint>
#include <cstring>
#include <date/date.h>
#include <date/tz.h>
#include <erfa.h>
#include <istream>
#include <ostream>
#include <streambuf>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace {

using KTX::TIM::GPSTimeC;
using KTX::TIM::GpsTimeC;
using KTX::TIM::TIMEBASE_UTC;
using KTX::TIM::YmdhmsC;
using MillisecondsT = std::chrono::milliseconds;

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

bool operator==(FieldsC const& a, FieldsC const& b) {
  return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour &&
         a.minute == b.minute && a.second == b.second && a.milliseconds == b.milliseconds;
}

constexpr std::size_t INPUTS = 1024;

/// Instants from 2018 to 2045 in hundredths of a second, which every library here can hold, in no
/// order that a branch predictor could learn.
std::vector<WeekC> const& weeks() {
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

FieldsC toUtcVorTime(WeekC const& input) {
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

FieldsC fieldsOf(date::sys_time<MillisecondsT> const& time) {
  auto const days = date::floor<date::days>(time);
  date::year_month_day const ymd(days);
  date::hh_mm_ss<MillisecondsT> const clock(time - days);
  return {int{ymd.year()},
          static_cast<int>(unsigned{ymd.month()}),
          static_cast<int>(unsigned{ymd.day()}),
          static_cast<int>(clock.hours().count()),
          static_cast<int>(clock.minutes().count()),
          static_cast<int>(clock.seconds().count()),
          static_cast<int>(clock.subseconds().count())};
}

FieldsC toUtcDate(WeekC const& input) {
  date::gps_time<MillisecondsT> const gps(date::weeks(input.week) + MillisecondsT(input.msOfWeek));
  return fieldsOf(date::clock_cast<std::chrono::system_clock>(gps));
}

constexpr date::sys_days GPS_EPOCH = date::sys_days(date::year(1980) / 1 / 6);
constexpr MillisecondsT LEAP_SECONDS(18000);

FieldsC toUtcPlainDate(WeekC const& input) {
  return fieldsOf(GPS_EPOCH + date::weeks(input.week) + MillisecondsT(input.msOfWeek) -
                  LEAP_SECONDS);
}

absl::Time abslEpoch() {
  return absl::FromCivil(absl::CivilDay(1980, 1, 6), absl::UTCTimeZone());
}

FieldsC toUtcAbsl(WeekC const& input) {
  static absl::Time const epoch = abslEpoch();
  static absl::TimeZone const utc = absl::UTCTimeZone();
  std::int64_t const ms = std::int64_t{input.week} * 604800000 + input.msOfWeek - 18000;
  auto const info = utc.At(epoch + absl::Milliseconds(ms));
  return {static_cast<int>(info.cs.year()),
          info.cs.month(),
          info.cs.day(),
          info.cs.hour(),
          info.cs.minute(),
          info.cs.second(),
          static_cast<int>(absl::ToInt64Milliseconds(info.subsecond))};
}

FieldsC toUtcErfa(WeekC const& input) {
  constexpr double EPOCH_TAI = 2444244.5;
  double const days = EPOCH_TAI + input.week * 7.0;
  double const fraction = (input.msOfWeek + 19000.0) / 86400000.0;
  double utc1 = 0;
  double utc2 = 0;
  eraTaiutc(days, fraction, &utc1, &utc2);
  FieldsC fields{};
  int clock[4];
  eraD2dtf("UTC", 3, utc1, utc2, &fields.year, &fields.month, &fields.day, clock);
  fields.hour = clock[0];
  fields.minute = clock[1];
  fields.second = clock[2];
  fields.milliseconds = clock[3];
  return fields;
}

template <class ConversionT>
void convertToUtc(benchmark::State& state, ConversionT const& conversion) {
  for (auto const& input : weeks()) {
    if (!(conversion(input) == toUtcVorTime(input))) {
      state.SkipWithError("a result differs");
    }
  }
  std::size_t i = 0;
  for (auto _ : state) {
    FieldsC const fields = conversion(weeks()[i++ % INPUTS]);
    benchmark::DoNotOptimize(fields);
  }
}
BENCHMARK_CAPTURE(convertToUtc, vortime, toUtcVorTime)->Name("BM_gps_to_utc_calendar/vortime");
BENCHMARK_CAPTURE(convertToUtc, date, toUtcDate)->Name("BM_gps_to_utc_calendar/date");
BENCHMARK_CAPTURE(convertToUtc, plain, toUtcPlainDate)
    ->Name("BM_gps_to_utc_calendar/date_without_leap_seconds");
BENCHMARK_CAPTURE(convertToUtc, absl, toUtcAbsl)->Name("BM_gps_to_utc_calendar/absl");
BENCHMARK_CAPTURE(convertToUtc, erfa, toUtcErfa)->Name("BM_gps_to_utc_calendar/erfa");

// UTC calendar fields to GPS week and milliseconds.

WeekC weekOf(std::int64_t ms) {
  return {static_cast<std::uint16_t>(ms / 604800000), static_cast<std::uint32_t>(ms % 604800000)};
}

YmdhmsC const BLANK = YmdhmsC::zero(TIMEBASE_UTC, 1);

WeekC toGpsVorTime(FieldsC const& input) {
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

date::sys_time<MillisecondsT> timeOf(FieldsC const& input) {
  date::sys_days const days = date::year(input.year) / input.month / input.day;
  return days + std::chrono::hours(input.hour) + std::chrono::minutes(input.minute) +
         std::chrono::seconds(input.second) + MillisecondsT(input.milliseconds);
}

WeekC toGpsDate(FieldsC const& input) {
  return weekOf(date::clock_cast<date::gps_clock>(timeOf(input)).time_since_epoch().count());
}

WeekC toGpsPlainDate(FieldsC const& input) {
  return weekOf((timeOf(input) - GPS_EPOCH + LEAP_SECONDS).count());
}

WeekC toGpsAbsl(FieldsC const& input) {
  static absl::Time const epoch = abslEpoch();
  static absl::TimeZone const utc = absl::UTCTimeZone();
  absl::CivilSecond const civil(input.year, input.month, input.day, input.hour, input.minute,
                                input.second);
  absl::Duration const sinceEpoch =
      absl::FromCivil(civil, utc) + absl::Milliseconds(input.milliseconds) - epoch;
  return weekOf(absl::ToInt64Milliseconds(sinceEpoch) + 18000);
}

WeekC toGpsErfa(FieldsC const& input) {
  double utc1 = 0;
  double utc2 = 0;
  eraDtf2d("UTC", input.year, input.month, input.day, input.hour, input.minute,
           input.second + input.milliseconds / 1000.0, &utc1, &utc2);
  double tai1 = 0;
  double tai2 = 0;
  eraUtctai(utc1, utc2, &tai1, &tai2);
  double const ms = (tai1 - 2444244.5) * 86400000.0 + tai2 * 86400000.0 - 19000.0;
  return weekOf(static_cast<std::int64_t>(ms + 0.5));
}

std::vector<FieldsC> const& calendars() {
  static std::vector<FieldsC> const inputs = [] {
    std::vector<FieldsC> values;
    for (auto const& input : weeks()) {
      values.push_back(toUtcVorTime(input));
    }
    return values;
  }();
  return inputs;
}

template <class ConversionT>
void convertToGps(benchmark::State& state, ConversionT const& conversion) {
  for (std::size_t i = 0; i < INPUTS; ++i) {
    WeekC const result = conversion(calendars()[i]);
    if (result.week != weeks()[i].week || result.msOfWeek != weeks()[i].msOfWeek) {
      state.SkipWithError("a result differs");
    }
  }
  std::size_t i = 0;
  for (auto _ : state) {
    WeekC const result = conversion(calendars()[i++ % INPUTS]);
    benchmark::DoNotOptimize(result);
  }
}
BENCHMARK_CAPTURE(convertToGps, vortime, toGpsVorTime)->Name("BM_utc_calendar_to_gps/vortime");
BENCHMARK_CAPTURE(convertToGps, date, toGpsDate)->Name("BM_utc_calendar_to_gps/date");
BENCHMARK_CAPTURE(convertToGps, plain, toGpsPlainDate)
    ->Name("BM_utc_calendar_to_gps/date_without_leap_seconds");
BENCHMARK_CAPTURE(convertToGps, absl, toGpsAbsl)->Name("BM_utc_calendar_to_gps/absl");
BENCHMARK_CAPTURE(convertToGps, erfa, toGpsErfa)->Name("BM_utc_calendar_to_gps/erfa");

// ISO text, of one value a call, into a stream over one buffer and out of one.

class BufferC : public std::streambuf {
 public:
  void rewindForOutput() { setp(text.data(), text.data() + text.size()); }
  void rewindForInput(std::string const& source) {
    std::memcpy(text.data(), source.data(), source.size());
    setg(text.data(), text.data(), text.data() + source.size());
  }
  char const* data() const { return text.data(); }

 private:
  std::array<char, 64> text{};
};

void writeVorTime(benchmark::State& state) {
  std::vector<YmdhmsC> inputs;
  for (auto const& input : weeks()) {
    YmdhmsC value{GPSTimeC(input.week, input.msOfWeek)};
    value.toUtc();
    inputs.push_back(value);
  }
  BufferC buffer;
  std::ostream stream(&buffer);
  std::size_t i = 0;
  for (auto _ : state) {
    buffer.rewindForOutput();
    stream << inputs[i++ % INPUTS];
    benchmark::DoNotOptimize(buffer.data());
  }
}
BENCHMARK(writeVorTime)->Name("BM_iso_text_out/vortime");

using CentisecondsT = std::chrono::duration<std::int64_t, std::centi>;

std::vector<date::sys_time<CentisecondsT>> dateInputs() {
  std::vector<date::sys_time<CentisecondsT>> inputs;
  for (auto const& fields : calendars()) {
    inputs.push_back(date::floor<CentisecondsT>(timeOf(fields)));
  }
  return inputs;
}

void writeDate(benchmark::State& state) {
  auto const inputs = dateInputs();
  BufferC buffer;
  std::ostream stream(&buffer);
  std::size_t i = 0;
  for (auto _ : state) {
    buffer.rewindForOutput();
    date::to_stream(stream, "%FT%TZ", inputs[i++ % INPUTS]);
    benchmark::DoNotOptimize(buffer.data());
  }
}
BENCHMARK(writeDate)->Name("BM_iso_text_out/date");

constexpr char ABSL_FORMAT[] = "%Y-%m-%d%ET%H:%M:%E2SZ";

void writeAbsl(benchmark::State& state) {
  std::vector<absl::Time> inputs;
  for (auto const& time : dateInputs()) {
    inputs.push_back(absl::UnixEpoch() + absl::Milliseconds(time.time_since_epoch().count() * 10));
  }
  absl::TimeZone const utc = absl::UTCTimeZone();
  std::size_t i = 0;
  for (auto _ : state) {
    std::string const text = absl::FormatTime(ABSL_FORMAT, inputs[i++ % INPUTS], utc);
    benchmark::DoNotOptimize(text.data());
  }
}
BENCHMARK(writeAbsl)->Name("BM_iso_text_out/absl");

std::vector<std::string> texts() {
  std::vector<std::string> values;
  for (auto const& time : dateInputs()) {
    values.push_back(date::format("%FT%TZ", time));
  }
  return values;
}

void readVorTime(benchmark::State& state) {
  auto const inputs = texts();
  BufferC buffer;
  std::istream stream(&buffer);
  YmdhmsC value = YmdhmsC::zero();
  std::size_t i = 0;
  for (auto _ : state) {
    buffer.rewindForInput(inputs[i++ % INPUTS]);
    stream >> value;
    benchmark::DoNotOptimize(value);
  }
  if (!stream) {
    state.SkipWithError("a text was not read");
  }
}
BENCHMARK(readVorTime)->Name("BM_iso_text_in/vortime");

void readDate(benchmark::State& state) {
  auto const inputs = texts();
  BufferC buffer;
  std::istream stream(&buffer);
  date::sys_time<CentisecondsT> value;
  std::size_t i = 0;
  for (auto _ : state) {
    buffer.rewindForInput(inputs[i++ % INPUTS]);
    date::from_stream(stream, "%FT%TZ", value);
    benchmark::DoNotOptimize(value);
  }
  if (!stream) {
    state.SkipWithError("a text was not read");
  }
}
BENCHMARK(readDate)->Name("BM_iso_text_in/date");

void readAbsl(benchmark::State& state) {
  auto const inputs = texts();
  absl::Time value;
  std::string error;
  bool isRead = true;
  std::size_t i = 0;
  for (auto _ : state) {
    isRead = absl::ParseTime(ABSL_FORMAT, inputs[i++ % INPUTS], &value, &error) && isRead;
    benchmark::DoNotOptimize(value);
  }
  if (!isRead) {
    state.SkipWithError("a text was not read");
  }
}
BENCHMARK(readAbsl)->Name("BM_iso_text_in/absl");

// Arithmetic, without a peer.

void addMilliseconds(benchmark::State& state) {
  GPSTimeC time(2304, 0);
  std::size_t i = 0;
  for (auto _ : state) {
    time += std::int64_t{weeks()[i++ % INPUTS].msOfWeek} - 302400000;
    benchmark::DoNotOptimize(time);
  }
}
BENCHMARK(addMilliseconds)->Name("BM_add_milliseconds/vortime");

void calendarToUtc(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    auto const& input = weeks()[i++ % INPUTS];
    YmdhmsC value{GPSTimeC(input.week, input.msOfWeek)};
    value.toUtc();
    benchmark::DoNotOptimize(value);
  }
}
BENCHMARK(calendarToUtc)->Name("BM_gps_calendar_to_utc_calendar/vortime");

}  // namespace
