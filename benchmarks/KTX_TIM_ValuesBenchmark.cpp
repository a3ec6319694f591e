// Conversions and texts that run for each observation, beside other libraries on the same instants.
//
// "date" knows leap seconds, "date_without_leap_seconds" and "absl" do not; "erfa" does.
#include <absl/strings/string_view.h>
#include <absl/time/time.h>
#include <chrono>
#include <cstdint>
#include <date/date.h>
#include <date/tz.h>
#include <erfa.h>
#include <istream>
#include <ostream>
#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "KTX_TIM_ManyThreads.h"
#include "KTX_TIM_ValueWorks.h"

namespace KTX::TIM::BENCH {
namespace {

using MillisecondsT = std::chrono::milliseconds;

// GPS week and milliseconds to UTC calendar fields.

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

BENCHMARK_TEMPLATE(convertGpsToUtcCalendar, benchmark::State)
    ->Name("BM_gps_to_utc_calendar/vortime");
BENCHMARK_CAPTURE(convertToUtc, date, toUtcDate)->Name("BM_gps_to_utc_calendar/date");
BENCHMARK_CAPTURE(convertToUtc, plain, toUtcPlainDate)
    ->Name("BM_gps_to_utc_calendar/date_without_leap_seconds");
BENCHMARK_CAPTURE(convertToUtc, absl, toUtcAbsl)->Name("BM_gps_to_utc_calendar/absl");
BENCHMARK_CAPTURE(convertToUtc, erfa, toUtcErfa)->Name("BM_gps_to_utc_calendar/erfa");

void convertToUtcByDate(benchmark::State& state) {
  convertToUtc(state, toUtcDate);
}

BENCHMARK_TEMPLATE(runInThreads, convertGpsToUtcCalendar<benchmark::State>)
    ->Name("BM_gps_to_utc_calendar/vortime")
    ->Apply(useThreads);
BENCHMARK_TEMPLATE(runInThreads, convertToUtcByDate)
    ->Name("BM_gps_to_utc_calendar/date")
    ->Apply(useThreads);

// UTC calendar fields to GPS week and milliseconds.

WeekC weekOf(std::int64_t ms) {
  return {static_cast<std::uint16_t>(ms / 604800000), static_cast<std::uint32_t>(ms % 604800000)};
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

BENCHMARK_TEMPLATE(convertUtcCalendarToGps, benchmark::State)
    ->Name("BM_utc_calendar_to_gps/vortime");
BENCHMARK_CAPTURE(convertToGps, date, toGpsDate)->Name("BM_utc_calendar_to_gps/date");
BENCHMARK_CAPTURE(convertToGps, plain, toGpsPlainDate)
    ->Name("BM_utc_calendar_to_gps/date_without_leap_seconds");
BENCHMARK_CAPTURE(convertToGps, absl, toGpsAbsl)->Name("BM_utc_calendar_to_gps/absl");
BENCHMARK_CAPTURE(convertToGps, erfa, toGpsErfa)->Name("BM_utc_calendar_to_gps/erfa");

// ISO text, of one value a call, into a stream over one buffer and out of one.

BENCHMARK_TEMPLATE(writeIsoText, benchmark::State)->Name("BM_iso_text_out/vortime");

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
  OneTextBufferC buffer;
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

BENCHMARK_TEMPLATE(readIsoText, benchmark::State)->Name("BM_iso_text_in/vortime");

void readDate(benchmark::State& state) {
  auto const inputs = isoTexts();
  OneTextBufferC buffer;
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
  auto const inputs = isoTexts();
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

BENCHMARK_TEMPLATE(addMilliseconds, benchmark::State)->Name("BM_add_milliseconds/vortime");
BENCHMARK_TEMPLATE(convertGpsCalendarToUtcCalendar, benchmark::State)
    ->Name("BM_gps_calendar_to_utc_calendar/vortime");

}  // namespace
}  // namespace KTX::TIM::BENCH
