// Sequences of observations, clock steps and seeds through the library and through a second, plain
// implementation of its rules: decisions, differences, mapping and present must be equal bit by
// bit.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <stdexcept>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_TimeConstants.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "common/KTX_TIM_FakePresent.h"
#include "common/KTX_TIM_PlainFilter.h"
#include "currenttime/KTX_TIM_SysTimeOffset.h"

namespace KTX::TIM::TEST {
namespace {

constexpr std::int64_t WEEK_MS = MS_PER_WEEK;
constexpr std::int64_t ALL_WEEKS_MS = 65536 * WEEK_MS;
constexpr std::int64_t LEAP_MS = 18000;

void require(bool isTrue, char const* what) {
  if (!isTrue) {
    std::fprintf(stderr, "the library and the plain filter differ: %s\n", what);
    std::abort();
  }
}

bool isSame(double a, double b) {
  return a == b || (a != a && b != b);
}

// Takes numbers from the front of the input; zeros when it is used up.
class InputC {
 public:
  InputC(std::uint8_t const* bytes, std::size_t count) : next(bytes), left(count) {}

  bool isEmpty() const { return left == 0; }

  template <class NumberT>
  NumberT take() {
    NumberT number{};
    std::size_t const count = left < sizeof number ? left : sizeof number;
    std::memcpy(&number, next, count);
    next += count;
    left -= count;
    return number;
  }

 private:
  std::uint8_t const* next;
  std::size_t left;
};

// Milliseconds since the GPS epoch of a day number, to the nearest.
std::int64_t msOfDay(double mjd) {
  double const days = mjd - 44244.0;
  std::int64_t const weeks = PlainFilterC::truncated(days / 7.0);
  double const ms = (days - static_cast<double>(weeks) * 7.0) * 86400.0 * 1000.0;
  return weeks * WEEK_MS + static_cast<std::int64_t>(std::floor(ms + 0.5));
}

std::int64_t wrapped(std::int64_t gpsMs) {
  std::int64_t const rest = gpsMs % ALL_WEEKS_MS;
  return rest < 0 ? rest + ALL_WEEKS_MS : rest;
}

class RunC {
 public:
  explicit RunC(InputC& numbers) : input(numbers), present(FakePresentC::THURSDAY_MS, 1000000) {
    plain.seed(SysTimeOffsetT::instance().getCurrentSysTime().mjd, 1000000);
    connection = connectTimeCorrected([this](int week, int ms, TimeChangeT change) {
      isSignalled = true;
      signalledMs = week * WEEK_MS + ms;
      signalledChangeMs = change.count();
    });
  }

  void run() {
    while (!input.isEmpty()) {
      switch (input.take<std::uint8_t>() % 8) {
        case 0:
          observeDay();
          break;
        case 1:
          seed();
          break;
        case 2:
          present.steady->set(input.take<std::int64_t>());
          break;
        case 3:
          present.steady->advance(input.take<std::int32_t>());
          break;
        case 4:
          observeWeek(input.take<std::uint16_t>() * WEEK_MS + input.take<std::uint32_t>() % WEEK_MS,
                      input.take<std::int64_t>());
          break;
        case 5:
          present.steady->advance(input.take<std::uint16_t>());
          [[fallthrough]];
        default:
          observeNearby();
          break;
      }
      compare();
    }
  }

 private:
  std::int64_t steadyMs() const { return present.steady->now().count(); }

  void seed() {
    // Whole days are exact in the calendar form as well.
    std::int64_t const days = input.take<std::uint16_t>();
    present.seed(days * MS_PER_DAY);
    plain.seed(40587.0 + static_cast<double>(days), steadyMs());
  }

  // Any day number at all, past the calendar.
  void observeDay() {
    double const mjd = input.take<double>();
    std::int64_t const noiseMs = input.take<std::int64_t>();
    bool isReleased = false;
    std::int64_t differenceMs = 0;
    Guard const guard(getTimeLock());
    SysTimeOffsetT::instance().update(mjd, noiseMs, isReleased, differenceMs);
    std::int64_t plainDifferenceMs = 0;
    require(plain.observe(mjd, noiseMs, steadyMs(), plainDifferenceMs) == isReleased, "decision");
    require(plainDifferenceMs == differenceMs, "difference");
  }

  void observeNearby() {
    double const now = plain.present(steadyMs());
    if (std::fabs(now) < 1e7) {
      observeWeek(wrapped(msOfDay(now) + LEAP_MS + input.take<std::int16_t>()),
                  input.take<std::uint8_t>());
    }
  }

  void observeWeek(std::int64_t gpsMs, std::int64_t noiseMs) {
    isSignalled = false;
    GpsC const observation(static_cast<std::uint16_t>(gpsMs / WEEK_MS),
                           static_cast<std::uint32_t>(gpsMs % WEEK_MS));
    bool hasPresent = true;
    try {
      observation.makeToCurrentTime(noiseMs, 1);
    } catch (std::out_of_range const&) {
      hasPresent = false;  // it lies beyond the year 9999
    }
    std::int64_t const utcMs = wrapped(gpsMs - LEAP_MS);
    double const mjd = static_cast<double>(44244 + utcMs / WEEK_MS * 7) +
                       static_cast<double>(utcMs % WEEK_MS) / 1000.0 / 86400.0;
    if (!hasPresent) {
      return;  // and the observation counts for nothing
    }
    std::int64_t differenceMs = 0;
    bool const isReleased = plain.observe(mjd, noiseMs, steadyMs(), differenceMs);
    double const now = plain.present(steadyMs());
    bool const isEpoch = now > 0.0 && wrapped(msOfDay(now) + LEAP_MS) == 0;
    require(isSignalled == (isReleased && !isEpoch), "signal");
    if (isSignalled) {
      require(signalledChangeMs == differenceMs, "signalled change");
      require(!(now > 1.0) || signalledMs == wrapped(msOfDay(now) + LEAP_MS), "signalled time");
    }
  }

  void compare() const {
    SteadyTimeC const& mapping = SysTimeOffsetT::instance().getCurrentSysTime();
    require(isSame(mapping.mjd, plain.mapping), "mapping");
    require(static_cast<std::uint64_t>(mapping.steadyMs) == plain.mappingClock, "clock of mapping");
    double const now = plain.present(steadyMs());
    if (std::fabs(now) < 1e7) {
      auto const presentMs = static_cast<std::int64_t>(GpsC::currentTime().toMilliseconds64());
      require(presentMs == wrapped(msOfDay(now) + LEAP_MS), "present");
    }
  }

  InputC& input;
  FakePresentC present;
  PlainFilterC plain;
  bool isSignalled = false;
  std::int64_t signalledMs = 0;
  std::int64_t signalledChangeMs = 0;
  boost::signals2::scoped_connection connection;
};

}  // namespace
}  // namespace KTX::TIM::TEST

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  KTX::TIM::TEST::InputC input(data, size);
  KTX::TIM::TEST::RunC(input).run();
  return 0;
}
