#include "currenttime/KTX_TIM_PosixClock.h"

#include <chrono>
#include <limits>
#include <string>
#include <vector>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <gtest/gtest.h>

#include "common/KTX_TIM_LogCapture.h"

namespace KTX::TIM::TEST {
namespace {

using boost::gregorian::date;
using boost::posix_time::hours;
using boost::posix_time::microseconds;
using boost::posix_time::ptime;

constexpr std::int64_t MAXIMUM = std::numeric_limits<std::int64_t>::max();
constexpr std::int64_t MINIMUM = std::numeric_limits<std::int64_t>::min();

ptime afterEpoch(std::int64_t us) {
  return ptime(date(1970, 1, 1)) + microseconds(us);
}

std::int64_t systemUs() {
  return std::chrono::duration_cast<std::chrono::microseconds>(
             std::chrono::system_clock::now().time_since_epoch())
      .count();
}

TEST(PosixClock, CountsTicksFromTheEpoch) {
  struct {
    std::int64_t us;
    std::int64_t ms;
    std::int64_t ns;
  } const cases[] = {
      {1719792000123456, 1719792000123, 1719792000123456000},
      {1719792000123999, 1719792000123, 1719792000123999000},
      {0, 0, 0},
      {1, 0, 1000},
      {999, 0, 999000},
      {1000, 1, 1000000},
      {-1, 0, -1000},
      {-999, 0, -999000},
      {-1000, -1, -1000000},
      {-1999, -1, -1999000},
  };
  for (auto const& c : cases) {
    EXPECT_EQ(c.ms, ticksSinceEpoch<boost::milli>(afterEpoch(c.us)).count());
    EXPECT_EQ(c.ns, ticksSinceEpoch<boost::nano>(afterEpoch(c.us)).count());
  }
}

TEST(PosixClock, TakesTheNearestLimitWhereNanosecondsEnd) {
  constexpr std::int64_t LAST_US = 9223372036854775;  // in the year 2262
  constexpr std::int64_t LAST_MS = 9223372036854;
  struct {
    std::int64_t us;
    std::int64_t ms;
    std::int64_t ns;
  } const cases[] = {
      {LAST_US, LAST_MS, 9223372036854775000},
      {LAST_US + 1, LAST_MS, MAXIMUM},
      {253402300799999999, 253402300799999, MAXIMUM},
      {-LAST_US, -LAST_MS, -9223372036854775000},
      {-LAST_US - 1, -LAST_MS, MINIMUM},
      {-17987443200000000, -17987443200000, MINIMUM},
  };
  for (auto const& c : cases) {
    EXPECT_EQ(c.ms, ticksSinceEpoch<boost::milli>(afterEpoch(c.us)).count());
    EXPECT_EQ(c.ns, ticksSinceEpoch<boost::nano>(afterEpoch(c.us)).count());
  }
}

TEST(PosixClock, ReadsZeroForAnInstantThatIsNoDate) {
  for (auto const special : {boost::posix_time::not_a_date_time, boost::posix_time::pos_infin,
                             boost::posix_time::neg_infin}) {
    EXPECT_EQ(0, ticksSinceEpoch<boost::milli>(ptime(special)).count());
    EXPECT_EQ(0, ticksSinceEpoch<boost::nano>(ptime(special)).count());
  }
}

TEST(PosixClock, ReadsTheSystemsUtc) {
  PosixClockC<boost::milli> const msClock(CLOCKREF_UTC);
  PosixClockC<boost::nano> const nsClock(CLOCKREF_UTC);
  std::int64_t const before = systemUs();
  std::int64_t const ms = msClock.now().count();
  std::int64_t const ns = nsClock.now().count();
  std::int64_t const after = systemUs();
  EXPECT_LE(before / 1000, ms);
  EXPECT_GE(after / 1000, ms);
  EXPECT_LE(before * 1000, ns);
  EXPECT_GE(after * 1000, ns);
  EXPECT_EQ(0, ns % 1000);
}

template <class Period>
class PosixClockPeriod : public ::testing::Test {};
using PeriodsT = ::testing::Types<boost::milli, boost::nano>;
TYPED_TEST_SUITE(PosixClockPeriod, PeriodsT, );

TYPED_TEST(PosixClockPeriod, KeepsItsReference) {
  for (auto const reference : {CLOCKREF_UTC, CLOCKREF_LOCAL, CLOCKREF_NONE}) {
    PosixClockC<TypeParam> const clock(reference);
    EXPECT_EQ(CLOCKTYPE_POSIX, clock.getType());
    EXPECT_EQ(reference, clock.getReference());
    EXPECT_EQ(ptime(date(1970, 1, 1)), clock.getEpoch());
  }
}

TYPED_TEST(PosixClockPeriod, AssertsAndReadsZeroWithoutACalendar) {
  struct {
    std::uint32_t reference;
    std::size_t assertions;
  } const cases[] = {{0, 1}, {3, 1}, {0xFFFFFFFF, 1}, {4, 0}, {0xFFFFFFFE, 0}};
  for (auto const& c : cases) {
    LogCaptureC const log;
    PosixClockC<TypeParam> const clock(static_cast<ClockReferenceE>(c.reference));
    EXPECT_EQ(0, clock.now().count()) << c.reference;
    EXPECT_EQ(std::vector<std::string>(c.assertions, "Calendar clock has no calendar reference!"),
              log.assertionTexts())
        << c.reference;
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
