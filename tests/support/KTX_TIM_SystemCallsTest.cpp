#include "support/KTX_TIM_SystemCalls.h"

#include <chrono>

#include <gtest/gtest.h>

#include "common/KTX_TIM_FakeSystemCalls.h"
#include "common/KTX_TIM_ScopedSystemCalls.h"

namespace KTX::TIM::TEST {
namespace {

using SecondsT = std::chrono::duration<std::int64_t>;

// Days since 1970-01-01 of a date of the Gregorian calendar.
std::int64_t daysOf(SystemTimeRecordC const& time) {
  std::int64_t const year = time.year - (time.month <= 2 ? 1 : 0);
  std::int64_t const month = time.month + (time.month <= 2 ? 12 : 0);
  return 365 * year + year / 4 - year / 100 + year / 400 + (153 * (month - 3) + 2) / 5 + time.day -
         719469;
}

std::int64_t millisecondsOf(SystemTimeRecordC const& time) {
  return ((daysOf(time) * 24 + time.hour) * 60 + time.minute) * 60000 + time.second * 1000 +
         time.milliseconds;
}

std::int64_t nowMs() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

TEST(SystemCalls, AreTheOperatingSystemsUnlessReplaced) {
  SystemCallsI* const system = &operatingSystemCalls();
  EXPECT_EQ(system, &systemCalls());
  FakeSystemCallsC first;
  FakeSystemCallsC second;
  EXPECT_EQ(nullptr, replaceSystemCalls(&first));
  EXPECT_EQ(&first, &systemCalls());
  EXPECT_EQ(&first, replaceSystemCalls(&second));
  EXPECT_EQ(&second, &systemCalls());
  EXPECT_EQ(&second, replaceSystemCalls(nullptr));
  EXPECT_EQ(system, &systemCalls());
}

TEST(SystemCalls, GiveTheSystemsTime) {
  SystemTimeRecordC utc{};
  std::int64_t const before = nowMs();
  operatingSystemCalls().getSystemTime(utc);
  std::int64_t const after = nowMs();
  std::int64_t const time = millisecondsOf(utc);
  // Windows steps this time by one tick of its clock.
  constexpr std::int64_t TICK_MS = 16;
  EXPECT_LE(before - TICK_MS, time);
  EXPECT_GE(after, time);
  EXPECT_EQ((daysOf(utc) + 4) % 7, utc.dayOfWeek);  // 1970-01-01 was a Thursday
}

TEST(SystemCalls, GiveTheLocalTime) {
  SystemTimeRecordC utc{};
  SystemTimeRecordC local{};
  operatingSystemCalls().getSystemTime(utc);
  operatingSystemCalls().getLocalTime(local);
  std::int64_t const offsetMs = millisecondsOf(local) - millisecondsOf(utc);
  constexpr std::int64_t QUARTER_MS = 15 * 60 * 1000;
  constexpr std::int64_t WIDEST_MS = 14 * 60 * 60 * 1000;
  EXPECT_LE(std::abs(offsetMs), WIDEST_MS + QUARTER_MS / 2);
  // Every offset in use today is a multiple of a quarter of an hour; some time passes meanwhile.
  std::int64_t const beyondQuarter = ((offsetMs % QUARTER_MS) + QUARTER_MS) % QUARTER_MS;
  EXPECT_LT(beyondQuarter, QUARTER_MS / 2);
}

TEST(SystemCalls, RefuseATimeThatIsNone) {
  SystemTimeRecordC const times[] = {
      {2024, 13, 0, 1, 0, 0, 0, 0},
      {2024, 0, 0, 1, 0, 0, 0, 0},
      {2023, 2, 0, 29, 0, 0, 0, 0},
      {2024, 4, 0, 31, 0, 0, 0, 0},
      {2024, 1, 0, 0, 0, 0, 0, 0},
      {2024, 1, 0, 1, 24, 0, 0, 0},
      {2024, 1, 0, 1, 0, 60, 0, 0},
      {2024, 1, 0, 1, 0, 0, 60, 0},
      {2024, 1, 0, 1, 0, 0, 0, 1000},
      {1600, 12, 0, 31, 0, 0, 0, 0},
      {65535, 65535, 65535, 65535, 65535, 65535, 65535, 65535},
  };
  for (auto const& time : times) {
    EXPECT_EQ(0, operatingSystemCalls().setSystemTime(time)) << time.year << '-' << time.month;
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
