// Over ten million pairs of boundary values through every operator, against 128-bit arithmetic.
#include <limits>
#include <random>
#include <string>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_GpsTimeValue.h"
#include "values/KTX_TIM_Ranges.h"
#include "values/KTX_TIM_TestSeed.h"

namespace KTX::TIM::TEST {
namespace {

__extension__ using WideT = __int128;

constexpr WideT WEEK = MS_PER_WEEK;
constexpr WideT ALL_WEEKS = 65536 * WEEK;

WideT totalOf(GPSTimeC const& time) {
  return time.getWeek() * WEEK + time.getMsOfWeek();
}

/// Wraps a total at 65536 weeks.
WideT wrapped(WideT total) {
  WideT const rest = total % ALL_WEEKS;
  return rest < 0 ? rest + ALL_WEEKS : rest;
}

/// The total with a negative week replaced by week 0.
WideT floored(WideT total) {
  return total >= 0 ? total : (total % WEEK + WEEK) % WEEK;
}

bool checkOrder(GPSTimeC const& a, GPSTimeC const& b) {
  WideT const difference = totalOf(a) - totalOf(b);
  return (a == b) == (difference == 0) && (a != b) == (difference != 0) &&
         (a < b) == (difference < 0) && (a <= b) == (difference <= 0) &&
         (a > b) == (difference > 0) && (a >= b) == (difference >= 0) &&
         differenceMs(a, b) == difference;
}

bool checkValues(GPSTimeC const& a, GPSTimeC const& b) {
  WideT const difference = totalOf(a) - totalOf(b);
  WideT const sum = wrapped(totalOf(a) + totalOf(b));
  GPSTimeC added(a);
  added += b;
  GPSTimeC taken(a);
  taken -= b;
  return totalOf(a + b) == sum && totalOf(added) == sum && totalOf(a - b) == floored(difference) &&
         totalOf(taken) == floored(difference) &&
         totalOf(GPSTimeC(a, b)) == (difference < 0 ? -difference : difference);
}

bool checkMilliseconds(GPSTimeC const& time, std::int64_t amount) {
  WideT const sum = wrapped(totalOf(time) + amount);
  WideT const difference = wrapped(totalOf(time) - amount);
  GPSTimeC added(time);
  added += amount;
  GPSTimeC taken(time);
  taken -= amount;
  return totalOf(time + amount) == sum && totalOf(added) == sum &&
         totalOf(time - amount) == difference && totalOf(taken) == difference;
}

bool checkSeconds(GPSTimeC const& time, std::int32_t amount) {
  GPSTimeC added(time);
  added.addSeconds(amount);
  return totalOf(added) == wrapped(totalOf(time) + WideT{amount} * 1000);
}

std::vector<GPSTimeC> boundaryTimes() {
  std::vector<GPSTimeC> times;
  for (std::uint32_t const centre : {0U, 1024U, 2048U, 16384U, 32768U, 49152U, 65536U}) {
    for (std::uint32_t offset = 0; offset < 9; ++offset) {
      auto const week = static_cast<std::uint16_t>(centre + offset - 4);
      for (std::uint32_t const ms :
           {0U, 86400000U, 302400000U, 302400001U, 604800000U - 18000U, 604800000U}) {
        for (std::uint32_t step = 0; step < 9; ++step) {
          times.emplace_back(week, (ms + step + MS_PER_WEEK - 4) % MS_PER_WEEK);
        }
      }
    }
  }
  return times;
}

template <class IntegerT>
void addAround(std::vector<IntegerT>& amounts, IntegerT centre, IntegerT radius) {
  for (IntegerT step = 0; step <= 2 * radius; ++step) {
    // Unsigned, because the neighbours of the limits wrap.
    using UnsignedT = std::make_unsigned_t<IntegerT>;
    amounts.push_back(static_cast<IntegerT>(static_cast<UnsignedT>(centre) +
                                            static_cast<UnsignedT>(step - radius)));
  }
}

template <class IntegerT>
std::vector<IntegerT> boundaryAmounts(IntegerT unitsPerWeek, IntegerT radius) {
  std::vector<IntegerT> amounts;
  addAround<IntegerT>(amounts, 0, radius);
  addAround<IntegerT>(amounts, std::numeric_limits<IntegerT>::min(), radius);
  for (int bit = 4; bit < std::numeric_limits<IntegerT>::digits; ++bit) {
    IntegerT const power = IntegerT{1} << bit;
    addAround<IntegerT>(amounts, power, radius);
    addAround<IntegerT>(amounts, -power, radius);
  }
  for (IntegerT weeks = 1; weeks <= 3000; weeks = weeks * 3 / 2 + 1) {
    addAround<IntegerT>(amounts, weeks * unitsPerWeek, radius);
    addAround<IntegerT>(amounts, -weeks * unitsPerWeek, radius);
  }
  return amounts;
}

std::string describe(std::uint32_t row, std::size_t column) {
  return "row " + std::to_string(row) + ", column " + std::to_string(column);
}

template <class OperandT, class CheckT>
std::string checkPairs(std::vector<GPSTimeC> const& times,
                       std::vector<OperandT> const& operands,
                       CheckT const& check) {
  return checkRange(static_cast<std::uint32_t>(times.size()),
                    [&](std::uint32_t first, std::uint32_t last) -> std::string {
                      for (std::uint32_t row = first; row < last; ++row) {
                        for (std::size_t column = 0; column < operands.size(); ++column) {
                          if (!check(times[row], operands[column])) {
                            return describe(row, column);
                          }
                        }
                      }
                      return {};
                    });
}

TEST(Arithmetic, OfTwoInstantsIsRightForAllBoundaryPairs) {
  auto const times = boundaryTimes();
  EXPECT_GE(times.size() * times.size(), 10000000U);
  EXPECT_EQ("", checkPairs(times, times, checkValues));
  EXPECT_EQ("", checkPairs(times, times, checkOrder));
}

TEST(Arithmetic, OfMillisecondsIsRightForAllBoundaryPairs) {
  auto const times = boundaryTimes();
  auto const amounts = boundaryAmounts<std::int64_t>(MS_PER_WEEK, 10);
  EXPECT_GE(times.size() * amounts.size(), 10000000U);
  EXPECT_EQ("", checkPairs(times, amounts, checkMilliseconds));
}

TEST(Arithmetic, OfSecondsIsRightForAllBoundaryPairs) {
  auto const times = boundaryTimes();
  auto const amounts = boundaryAmounts<std::int32_t>(SECONDS_PER_WEEK, 20);
  EXPECT_GE(times.size() * amounts.size(), 10000000U);
  EXPECT_EQ("", checkPairs(times, amounts, checkSeconds));
}

TEST(Arithmetic, IsRightForRandomPairs) {
  std::mt19937_64 random(testSeed());
  for (int i = 0; i < 300000; ++i) {
    std::uint64_t const bits = random();
    GPSTimeC const a(static_cast<std::uint16_t>(bits), static_cast<std::uint32_t>(bits >> 16));
    GPSTimeC const b(static_cast<std::uint16_t>(bits >> 48), static_cast<std::uint32_t>(random()));
    auto const amount = static_cast<std::int64_t>(random() >> (random() % 60));
    auto const seconds = static_cast<std::int32_t>(random());
    ASSERT_TRUE(checkValues(a, b)) << a << " / " << b;
    ASSERT_TRUE(checkOrder(a, b)) << a << " / " << b;
    ASSERT_TRUE(checkMilliseconds(a, amount)) << a << " / " << amount;
    ASSERT_TRUE(checkMilliseconds(a, -amount - 1)) << a << " / " << -amount - 1;
    ASSERT_TRUE(checkSeconds(a, seconds)) << a << " / " << seconds;
  }
}

}  // namespace
}  // namespace KTX::TIM::TEST
