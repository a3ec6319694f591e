#include "KTX/TIM/KTX_TIM_GpsTimeValue.h"

#include <iomanip>
#include <limits>
#include <locale>
#include <sstream>
#include <type_traits>

#include <gtest/gtest.h>

namespace KTX::TIM::TEST {
namespace {

constexpr std::int64_t INT64_LOWEST = std::numeric_limits<std::int64_t>::min();
constexpr std::int64_t INT64_HIGHEST = std::numeric_limits<std::int64_t>::max();
constexpr std::int32_t INT32_LOWEST = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t INT32_HIGHEST = std::numeric_limits<std::int32_t>::max();
constexpr std::uint32_t UINT32_HIGHEST = std::numeric_limits<std::uint32_t>::max();

static_assert(std::has_virtual_destructor_v<GPSTimeC>);
static_assert(!std::is_convertible_v<std::uint32_t, GPSTimeC>);

TEST(GpsTimeValue, StartsAtTheEpoch) {
  EXPECT_EQ(0, GPSTimeC().getWeek());
  EXPECT_EQ(0U, GPSTimeC().getMsOfWeek());
}

TEST(GpsTimeValue, TakesTheWeekFirst) {
  GPSTimeC const time(1, 2);
  EXPECT_EQ(1, time.getWeek());
  EXPECT_EQ(2U, time.getMsOfWeek());
}

TEST(GpsTimeValue, CarriesWholeWeeksWhenBuilt) {
  struct {
    std::uint16_t week;
    std::uint32_t msOfWeek;
    std::uint16_t expectedWeek;
    std::uint32_t expectedMs;
  } const cases[] = {{10, 604799999, 10, 604799999}, {10, 604800000, 11, 0},
                     {10, 604800001, 11, 1},         {10, 1209600001, 12, 1},
                     {0, 4294967295, 7, 61367295},   {65535, 604799999, 65535, 604799999},
                     {65535, 604800000, 0, 0},       {65535, 4294967295, 6, 61367295}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.week << ", " << c.msOfWeek);
    GPSTimeC const time(c.week, c.msOfWeek);
    EXPECT_EQ(c.expectedWeek, time.getWeek());
    EXPECT_EQ(c.expectedMs, time.getMsOfWeek());
  }
}

TEST(GpsTimeValue, MeasuresTheAbsoluteDistance) {
  struct {
    GPSTimeC a;
    GPSTimeC b;
    GPSTimeC expected;
  } const cases[] = {
      {{5, 100}, {5, 300}, {0, 200}}, {{3, 500}, {4, 100}, {0, 604799600}},
      {{3, 500}, {3, 500}, {0, 0}},   {{0, 0}, {65535, 604799999}, {65535, 604799999}},
      {{2, 0}, {7, 1}, {5, 1}},       {{2, 1}, {7, 0}, {4, 604799999}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.a << " / " << c.b);
    EXPECT_EQ(c.expected, GPSTimeC(c.a, c.b));
    EXPECT_EQ(c.expected, GPSTimeC(c.b, c.a));
  }
}

TEST(GpsTimeValue, ComparesTheWeekFirst) {
  GPSTimeC const ascending[] = {{0, 0}, {0, 1}, {0, 604799999}, {1, 0}, {5, 7}, {65535, 604799999}};
  for (auto const& a : ascending) {
    for (auto const& b : ascending) {
      SCOPED_TRACE(::testing::Message() << a << " / " << b);
      EXPECT_EQ(&a == &b, a == b);
      EXPECT_EQ(&a != &b, a != b);
      EXPECT_EQ(&a < &b, a < b);
      EXPECT_EQ(&a <= &b, a <= b);
      EXPECT_EQ(&a > &b, a > b);
      EXPECT_EQ(&a >= &b, a >= b);
    }
  }
}

TEST(GpsTimeValue, SaturatesTheTotalOf32Bits) {
  EXPECT_EQ(4233600000U, GPSTimeC(7, 0).toMilliseconds32());
  EXPECT_EQ(4294967294U, GPSTimeC(7, 61367294).toMilliseconds32());
  EXPECT_EQ(UINT32_HIGHEST, GPSTimeC(7, 61367295).toMilliseconds32());
  EXPECT_EQ(UINT32_HIGHEST, GPSTimeC(7, 61367296).toMilliseconds32());
  EXPECT_EQ(UINT32_HIGHEST, GPSTimeC(8, 0).toMilliseconds32());
  EXPECT_EQ(UINT32_HIGHEST, GPSTimeC(65535, 604799999).toMilliseconds32());
}

TEST(GpsTimeValue, HoldsTheTotalOf64Bits) {
  EXPECT_EQ(0U, GPSTimeC().toMilliseconds64());
  EXPECT_EQ(4838400000U, GPSTimeC(8, 0).toMilliseconds64());
  EXPECT_EQ(39636172799999U, GPSTimeC(65535, 604799999).toMilliseconds64());
}

TEST(GpsTimeValue, AddsInstantsAndWraps) {
  EXPECT_EQ(GPSTimeC(12, 3), GPSTimeC(5, 1) + GPSTimeC(7, 2));
  EXPECT_EQ(GPSTimeC(13, 0), GPSTimeC(5, 604799999) + GPSTimeC(7, 1));
  EXPECT_EQ(GPSTimeC(14465, 604799998), GPSTimeC(40000, 604799999) + GPSTimeC(40000, 604799999));
  GPSTimeC doubled(40000, 604799999);
  doubled += doubled;
  EXPECT_EQ(GPSTimeC(14465, 604799998), doubled);
}

TEST(GpsTimeValue, FloorsTheDifferenceOfInstantsAtWeekZero) {
  struct {
    GPSTimeC a;
    GPSTimeC b;
    GPSTimeC expected;
  } const cases[] = {{{5, 100}, {7, 0}, {0, 100}},
                     {{5, 100}, {7, 200}, {0, 604799900}},
                     {{0, 0}, {65535, 604799999}, {0, 1}},
                     {{0, 0}, {0, 1}, {0, 604799999}},
                     {{5, 100}, {5, 100}, {0, 0}},
                     {{5, 100}, {4, 200}, {0, 604799900}},
                     {{65535, 604799999}, {0, 0}, {65535, 604799999}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.a << " / " << c.b);
    EXPECT_EQ(c.expected, c.a - c.b);
    GPSTimeC inPlace(c.a);
    EXPECT_EQ(&inPlace, &(inPlace -= c.b));
    EXPECT_EQ(c.expected, inPlace);
  }
  GPSTimeC self(9, 9);
  GPSTimeC const& same = self;
  self -= same;
  EXPECT_EQ(GPSTimeC(0, 0), self);
}

TEST(GpsTimeValue, AddsMillisecondsOfEitherSign) {
  struct {
    GPSTimeC time;
    std::int64_t amount;
    GPSTimeC expected;
  } const cases[] = {{{10, 604799000}, 1000, {11, 0}},
                     {{10, 604799000}, 999, {10, 604799999}},
                     {{10, 604799000}, -1000, {10, 604798000}},
                     {{10, 0}, 604799999, {10, 604799999}},
                     {{10, 0}, 604800000, {11, 0}},
                     {{10, 1}, 604800000LL * 3 + 604799999, {14, 0}},
                     {{65535, 604799999}, 1, {0, 0}},
                     {{0, 0}, -1, {65535, 604799999}},
                     {{0, 0}, INT64_LOWEST, {8283, 319624192}},
                     {{0, 0}, INT64_HIGHEST, {57252, 285175807}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.time << " + " << c.amount);
    EXPECT_EQ(c.expected, c.time + c.amount);
    GPSTimeC inPlace(c.time);
    EXPECT_EQ(&inPlace, &(inPlace += c.amount));
    EXPECT_EQ(c.expected, inPlace);
  }
}

TEST(GpsTimeValue, TakesOffMillisecondsOfEitherSign) {
  struct {
    GPSTimeC time;
    std::int64_t amount;
    GPSTimeC expected;
  } const cases[] = {{{5, 100}, 200, {4, 604799900}},
                     {{5, 100}, 100, {5, 0}},
                     {{0, 0}, 1, {65535, 604799999}},
                     {{2, 5}, 604800006, {0, 604799999}},
                     {{2, 5}, 604800005, {1, 0}},
                     {{10, 604799000}, -1000, {11, 0}},
                     {{0, 0}, INT64_LOWEST, {57252, 285175808}},
                     {{0, 0}, INT64_HIGHEST, {8283, 319624193}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.time << " - " << c.amount);
    EXPECT_EQ(c.expected, c.time - c.amount);
    GPSTimeC inPlace(c.time);
    EXPECT_EQ(&inPlace, &(inPlace -= c.amount));
    EXPECT_EQ(c.expected, inPlace);
  }
}

TEST(GpsTimeValue, AddsSecondsInPlace) {
  struct {
    GPSTimeC time;
    std::int32_t seconds;
    GPSTimeC expected;
  } const cases[] = {{{3, 7}, 604800, {4, 7}},
                     {{3, 7}, 604799, {3, 604799007}},
                     {{3, 604799999}, 1, {4, 999}},
                     {{3, 604799000}, 1, {4, 0}},
                     {{3, 604798999}, 1, {3, 604799999}},
                     {{3, 7}, 0, {3, 7}},
                     {{3, 0}, -1, {2, 604799000}},
                     {{3, 7}, -604800, {2, 7}},
                     {{3, 7}, -604801, {1, 604799007}},
                     {{0, 0}, -1, {65535, 604799000}},
                     {{0, 0}, INT32_LOWEST, {61985, 161152000}},
                     {{0, 0}, INT32_HIGHEST, {3550, 443647000}}};
  for (auto const& c : cases) {
    SCOPED_TRACE(::testing::Message() << c.time << " addSeconds " << c.seconds);
    GPSTimeC time(c.time);
    EXPECT_EQ(&time, &time.addSeconds(c.seconds));
    EXPECT_EQ(c.expected, time);
  }
}

TEST(GpsTimeValue, GivesASignedDifferenceWithoutAFloor) {
  EXPECT_EQ(-604800000, differenceMs({1, 0}, {2, 0}));
  EXPECT_EQ(604800000, differenceMs({2, 0}, {1, 0}));
  EXPECT_EQ(0, differenceMs({2, 5}, {2, 5}));
  EXPECT_EQ(-1, differenceMs({2, 604799999}, {3, 0}));
  EXPECT_EQ(39636172799999, differenceMs({65535, 604799999}, {0, 0}));
  EXPECT_EQ(-39636172799999, differenceMs({0, 0}, {65535, 604799999}));
}

TEST(GpsTimeValue, WritesPlainDecimalText) {
  std::ostringstream stream;
  stream << GPSTimeC(1929, 604799999);
  EXPECT_EQ("week: 1929 msec: 604799999", stream.str());
}

class Grouping : public std::numpunct<char> {
 protected:
  char do_thousands_sep() const override { return '.'; }
  std::string do_grouping() const override { return "\3"; }
};

TEST(GpsTimeValue, KeepsTheStreamsFormattingOutOfItsTextAndUnchanged) {
  std::ostringstream stream;
  stream.imbue(std::locale(std::locale::classic(), new Grouping));
  stream << std::hex << std::showbase << std::setfill('*') << std::setw(60) << std::left;
  auto const flags = stream.flags();
  stream << GPSTimeC(1929, 604799999);
  EXPECT_EQ("week: 1929 msec: 604799999", stream.str());
  EXPECT_EQ(flags, stream.flags());
  EXPECT_EQ('*', stream.fill());
  EXPECT_EQ(60, stream.width());
}

}  // namespace
}  // namespace KTX::TIM::TEST
