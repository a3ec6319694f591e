// Two instants and an amount through every operator, against 128-bit arithmetic.
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

namespace {

using KTX::TIM::GPSTimeC;
using KTX::TIM::GpsTimeC;
using KTX::TIM::MjdTimeC;
using KTX::TIM::YmdhmsC;

__extension__ using WideT = __int128;

constexpr WideT WEEK = 604800000;

struct InputC {
  std::int64_t amount;
  double dayNumber;
  std::uint32_t msA;
  std::uint32_t msB;
  std::int32_t seconds;
  std::uint16_t weekA;
  std::uint16_t weekB;
};

void require(bool condition) {
  if (!condition) {
    std::abort();
  }
}

WideT totalOf(GPSTimeC const& time) {
  return time.getWeek() * WEEK + time.getMsOfWeek();
}

WideT wrapped(WideT total) {
  WideT const rest = total % (65536 * WEEK);
  return rest < 0 ? rest + 65536 * WEEK : rest;
}

WideT floored(WideT total) {
  return total >= 0 ? total : (total % WEEK + WEEK) % WEEK;
}

void checkPair(GPSTimeC const& a, GPSTimeC const& b) {
  WideT const difference = totalOf(a) - totalOf(b);
  require(totalOf(a + b) == wrapped(totalOf(a) + totalOf(b)));
  require(totalOf(a - b) == floored(difference));
  require(differenceMs(a, b) == difference);
  require((a < b) == (difference < 0) && (a == b) == (difference == 0));
  require(totalOf(GPSTimeC(a, b)) == (difference < 0 ? -difference : difference));
}

void checkAmounts(GPSTimeC const& time, std::int64_t amount, std::int32_t seconds) {
  require(totalOf(time + amount) == wrapped(totalOf(time) + amount));
  require(totalOf(time - amount) == wrapped(totalOf(time) - amount));
  GPSTimeC moved(time);
  moved.addSeconds(seconds);
  require(totalOf(moved) == wrapped(totalOf(time) + WideT{seconds} * 1000));
}

void checkForms(GPSTimeC const& time, double dayNumber) {
  require(GpsTimeC(MjdTimeC(time)) == time);
  require(GpsTimeC(YmdhmsC(MjdTimeC(time), 1)) == time);
  require(GpsTimeC(MjdTimeC(dayNumber)).getMsOfWeek() < 604800000);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  InputC input{};
  std::memcpy(&input, data, size < sizeof(input) ? size : sizeof(input));
  GPSTimeC const a(input.weekA, input.msA);
  GPSTimeC const b(input.weekB, input.msB);
  require(totalOf(a) == wrapped(input.weekA * WEEK + input.msA));
  checkPair(a, b);
  checkPair(b, a);
  checkAmounts(a, input.amount, input.seconds);
  checkForms(a, input.dayNumber);
  return 0;
}
