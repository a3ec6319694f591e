// The POSIX calls, with the clock of the C library replaced: nothing reaches the machine's.
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

#include <gtest/gtest.h>

#include "support/KTX_TIM_SystemCalls.h"

namespace {

std::optional<timespec> scriptedTime;
std::vector<timespec> timesSet;
int errorOfSetting = 0;

}  // namespace

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
  if (clock == CLOCK_REALTIME && scriptedTime) {
    *time = *scriptedTime;
    return 0;
  }
  return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
}

extern "C" int clock_settime(clockid_t clock, timespec const* time) noexcept {
  EXPECT_EQ(CLOCK_REALTIME, clock);
  if (errorOfSetting != 0) {
    errno = errorOfSetting;
    return -1;
  }
  timesSet.push_back(*time);
  return 0;
}

namespace KTX::TIM::TEST {
namespace {

class SystemCallsPosix : public ::testing::Test {
 protected:
  ~SystemCallsPosix() override {
    scriptedTime.reset();
    timesSet.clear();
    errorOfSetting = 0;
    unsetenv("TZ");
    tzset();
  }

  static void useZone(char const* zone) { setenv("TZ", zone, 1); }

  static void expectRecord(SystemTimeRecordC const& expected, SystemTimeRecordC const& actual) {
    EXPECT_EQ(expected.year, actual.year);
    EXPECT_EQ(expected.month, actual.month);
    EXPECT_EQ(expected.dayOfWeek, actual.dayOfWeek);
    EXPECT_EQ(expected.day, actual.day);
    EXPECT_EQ(expected.hour, actual.hour);
    EXPECT_EQ(expected.minute, actual.minute);
    EXPECT_EQ(expected.second, actual.second);
    EXPECT_EQ(expected.milliseconds, actual.milliseconds);
  }

  SystemCallsI& calls = operatingSystemCalls();
};

TEST_F(SystemCallsPosix, SplitTheSystemsTime) {
  struct {
    timespec time;
    SystemTimeRecordC expected;
  } const cases[] = {
      {{0, 0}, {1970, 1, 4, 1, 0, 0, 0, 0}},
      {{-1, 500000000}, {1969, 12, 3, 31, 23, 59, 59, 500}},
      {{1709251199, 999999999}, {2024, 2, 4, 29, 23, 59, 59, 999}},
      {{1709251200, 999999}, {2024, 3, 5, 1, 0, 0, 0, 0}},
      {{1709251200, 1000000}, {2024, 3, 5, 1, 0, 0, 0, 1}},
      {{253402300799, 0}, {9999, 12, 5, 31, 23, 59, 59, 0}},
  };
  useZone("Asia/Tokyo");
  for (auto const& c : cases) {
    scriptedTime = c.time;
    SystemTimeRecordC utc{};
    calls.getSystemTime(utc);
    expectRecord(c.expected, utc);
  }
}

TEST_F(SystemCallsPosix, GiveTheLocalTimeOfTheZoneInForce) {
  struct {
    char const* zone;
    std::time_t seconds;
    SystemTimeRecordC expected;
  } const cases[] = {
      {"UTC", 1710054000, {2024, 3, 0, 10, 7, 0, 0, 7}},
      {"America/New_York", 1710053999, {2024, 3, 0, 10, 1, 59, 59, 7}},
      {"America/New_York", 1710054000, {2024, 3, 0, 10, 3, 0, 0, 7}},
      {"Asia/Kolkata", 1710054000, {2024, 3, 0, 10, 12, 30, 0, 7}},
  };
  for (auto const& c : cases) {
    SCOPED_TRACE(c.zone);
    useZone(c.zone);
    scriptedTime = timespec{c.seconds, 7000000};
    SystemTimeRecordC local{};
    calls.getLocalTime(local);
    expectRecord(c.expected, local);
  }
}

TEST_F(SystemCallsPosix, SetTheSystemsTimeWhateverTheZone) {
  struct {
    SystemTimeRecordC time;
    std::time_t seconds;
    long nanoseconds;
  } const cases[] = {
      {{2024, 2, 0, 29, 23, 59, 59, 999}, 1709251199, 999000000},
      {{2024, 3, 99, 1, 0, 0, 0, 0}, 1709251200, 0},  // the day of the week does not count
      {{1970, 1, 4, 1, 0, 0, 0, 1}, 0, 1000000},
      {{1601, 1, 1, 1, 0, 0, 0, 0}, -11644473600, 0},
      {{30827, 12, 5, 31, 23, 59, 59, 999}, 910670515199, 999000000},
      {{2000, 2, 2, 29, 12, 0, 0, 0}, 951825600, 0},
  };
  useZone("America/New_York");
  for (auto const& c : cases) {
    SCOPED_TRACE(c.time.year);
    timesSet.clear();
    EXPECT_EQ(1, calls.setSystemTime(c.time));
    ASSERT_EQ(1U, timesSet.size());
    EXPECT_EQ(c.seconds, timesSet[0].tv_sec);
    EXPECT_EQ(c.nanoseconds, timesSet[0].tv_nsec);
  }
}

TEST_F(SystemCallsPosix, DoNotTouchTheClockForATimeThatIsNone) {
  SystemTimeRecordC const good{2024, 6, 0, 30, 23, 59, 59, 999};
  auto const expectRefused = [&](std::uint16_t SystemTimeRecordC::*field,
                                 std::vector<std::uint16_t> const& values) {
    for (std::uint16_t const value : values) {
      SystemTimeRecordC bad = good;
      bad.*field = value;
      EXPECT_EQ(0, calls.setSystemTime(bad)) << value;
    }
  };
  EXPECT_EQ(1, calls.setSystemTime(good));
  expectRefused(&SystemTimeRecordC::year, {0, 1600, 30828, 65535});
  expectRefused(&SystemTimeRecordC::month, {0, 13, 65535});
  expectRefused(&SystemTimeRecordC::day, {0, 31, 32, 65535});
  expectRefused(&SystemTimeRecordC::hour, {24, 65535});
  expectRefused(&SystemTimeRecordC::minute, {60, 65535});
  expectRefused(&SystemTimeRecordC::second, {60, 65535});
  expectRefused(&SystemTimeRecordC::milliseconds, {1000, 65535});
  EXPECT_EQ(0, calls.setSystemTime({1900, 2, 0, 29, 0, 0, 0, 0}));
  EXPECT_EQ(0, calls.setSystemTime({2023, 2, 0, 29, 0, 0, 0, 0}));
  EXPECT_EQ(1U, timesSet.size());
}

TEST_F(SystemCallsPosix, TellThatTheSystemRefused) {
  errorOfSetting = EPERM;
  EXPECT_EQ(0, calls.setSystemTime({2024, 6, 0, 30, 0, 0, 0, 0}));
}

}  // namespace
}  // namespace KTX::TIM::TEST
