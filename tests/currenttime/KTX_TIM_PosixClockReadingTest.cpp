// The calendar clock with the time function of the C library replaced.
#include <cstdlib>
#include <limits>
#include <stdexcept>
#include <string>
#include <sys/time.h>

#include <boost/date_time/gregorian/greg_date.hpp>
#include <gtest/gtest.h>

#include "currenttime/KTX_TIM_PosixClock.h"

namespace {

timeval scriptedTime{};

}  // namespace

extern "C" int gettimeofday(timeval* time, void* /*zone*/) noexcept {
  *time = scriptedTime;
  return 0;
}

namespace KTX::TIM::TEST {
namespace {

class PosixClockReading : public ::testing::Test {
 protected:
  PosixClockReading() {
    setenv("TZ", "America/New_York", 1);
    tzset();
  }
  ~PosixClockReading() override {
    unsetenv("TZ");
    tzset();
  }

  static std::int64_t readMs(ClockReferenceE reference) {
    return PosixClockC<boost::milli>(reference).now().count();
  }
  static std::int64_t readNs(ClockReferenceE reference) {
    return PosixClockC<boost::nano>(reference).now().count();
  }
  template <class ReadT>
  static std::string failureOf(ReadT const& read) {
    try {
      read();
    } catch (std::runtime_error const& error) {
      return error.what();
    }
    return "none";
  }
};

TEST_F(PosixClockReading, ConvertsMicrosecondsOfUtcAndLocalTime) {
  struct {
    timeval time;
    std::int64_t utcMs;
    std::int64_t offsetMs;
  } const cases[] = {
      {{1719792000, 123456}, 1719792000123, -4 * 3600000},
      {{1719792000, 123999}, 1719792000123, -4 * 3600000},
      {{1710053999, 999999}, 1710053999999, -5 * 3600000},
      {{1710054000, 0}, 1710054000000, -4 * 3600000},
      {{1, 0}, 1000, -5 * 3600000},
  };
  for (auto const& c : cases) {
    scriptedTime = c.time;
    std::int64_t const utcNs = (c.time.tv_sec * 1000000 + c.time.tv_usec) * 1000;
    EXPECT_EQ(c.utcMs, readMs(CLOCKREF_UTC));
    EXPECT_EQ(utcNs, readNs(CLOCKREF_UTC));
    EXPECT_EQ(utcNs + c.offsetMs * 1000000, readNs(CLOCKREF_LOCAL));
    EXPECT_EQ((utcNs + c.offsetMs * 1000000) / 1000000, readMs(CLOCKREF_LOCAL));
  }
}

TEST_F(PosixClockReading, PassesTheDateLibrarysExceptionsOn) {
  scriptedTime = {std::numeric_limits<std::time_t>::max(), 0};
  std::string const utcFailure = "could not convert calendar time to UTC time";
  std::string const localFailure = "could not convert calendar time to local time";
  EXPECT_EQ(utcFailure, failureOf([] { readMs(CLOCKREF_UTC); }));
  EXPECT_EQ(utcFailure, failureOf([] { readNs(CLOCKREF_UTC); }));
  EXPECT_EQ(localFailure, failureOf([] { readMs(CLOCKREF_LOCAL); }));
  EXPECT_EQ(localFailure, failureOf([] { readNs(CLOCKREF_LOCAL); }));
  scriptedTime = {253402300800, 0};  // the year 10000
  EXPECT_THROW(readMs(CLOCKREF_UTC), boost::gregorian::bad_year);
}

}  // namespace
}  // namespace KTX::TIM::TEST
