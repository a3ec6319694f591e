#include <memory>
#include <type_traits>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_GpsLocal.h"
#include "KTX/TIM/KTX_TIM_SimTime.h"
#include "KTX/TIM/KTX_TIM_SysTime.h"
#include "common/KTX_TIM_LogCapture.h"
#include "values/KTX_TIM_ScriptedProvider.h"

namespace KTX::TIM::TEST {
namespace {

static_assert(std::has_virtual_destructor_v<SysTimeC> && std::is_polymorphic_v<SysTimeC>);
static_assert(std::has_virtual_destructor_v<SimTimeC> && std::is_polymorphic_v<SimTimeC>);
static_assert(!std::is_default_constructible_v<GpsLocalC>);
static_assert(!std::is_constructible_v<GpsLocalC, std::uint16_t, std::uint32_t>);
static_assert(sizeof(GpsLocalC) == sizeof(GpsC));

constexpr LeapSecondProviderI* NO_PROVIDER = nullptr;

TEST(GpsLocal, HoldsTheGivenProvider) {
  ScriptedProviderC stub({unknownAnswer(5, 5)});
  GpsLocalC const time(&stub);
  EXPECT_EQ(GPSTimeC(0, 0), time);
  EXPECT_EQ(&stub, time.getLeapSecondProvider());
}

TEST(GpsLocal, ReportsANullProviderWhenBuiltAndCopiesItSilently) {
  LogCaptureC const log;
  GpsLocalC const time(NO_PROVIDER);
  EXPECT_EQ(1U, log.assertionCount());
  GpsLocalC const copy(time);
  EXPECT_EQ(nullptr, copy.getLeapSecondProvider());
  EXPECT_EQ(1U, log.assertionCount());
  EXPECT_EQ(0, copy.getLeapSeconds());
  EXPECT_EQ(2U, log.assertionCount());
}

TEST(GpsLocal, OffersTheOperationsOfItsBases) {
  ScriptedProviderC stub({unknownAnswer(5, 5)});
  GpsLocalC time(&stub);
  time += 1500;
  time.addSeconds(2);
  EXPECT_EQ(GPSTimeC(0, 3500), time);
  EXPECT_EQ(&stub, time.getLeapSecondProvider());
  time.gpsToUtc();
  EXPECT_EQ(GPSTimeC(65535, 604798500), time);
}

TEST(GpsLocal, TakesTheAssignmentsOfItsBase) {
  ScriptedProviderC stub({unknownAnswer(5, 5)});
  GpsLocalC time(&stub);
  time = GPSTimeC(3, 4);
  EXPECT_EQ(GPSTimeC(3, 4), time);
  EXPECT_EQ(getDefaultLeapSecondProvider(), time.getLeapSecondProvider());
  time = GpsLocalC(&stub);
  EXPECT_EQ(GPSTimeC(0, 0), time);
  EXPECT_EQ(&stub, time.getLeapSecondProvider());
  GpsC const gps(7, 8);
  time = gps;
  EXPECT_EQ(GPSTimeC(7, 8), time);
  EXPECT_EQ(getDefaultLeapSecondProvider(), time.getLeapSecondProvider());
}

class CountingLocalC : public GpsLocalC {
 public:
  CountingLocalC(LeapSecondProviderI* stub, int& destroyedCount)
      : GpsLocalC(stub), destroyed(destroyedCount) {}
  CountingLocalC(CountingLocalC const&) = delete;
  CountingLocalC& operator=(CountingLocalC const&) = delete;
  ~CountingLocalC() override { ++destroyed; }

 private:
  int& destroyed;
};

TEST(GpsLocal, IsDestroyedThroughABasePointer) {
  ScriptedProviderC stub({unknownAnswer(5, 5)});
  int destroyed = 0;
  std::unique_ptr<GPSTimeC> time = std::make_unique<CountingLocalC>(&stub, destroyed);
  EXPECT_NE(nullptr, dynamic_cast<GpsLocalC*>(time.get()));
  time.reset();
  EXPECT_EQ(1, destroyed);
}

TEST(TimeTags, AreDistinctTypesWithRunTimeIdentity) {
  SysTimeC const system;
  SimTimeC const simulated;
  EXPECT_TRUE(typeid(system) == typeid(SysTimeC));
  EXPECT_TRUE(typeid(simulated) == typeid(SimTimeC));
  EXPECT_FALSE(typeid(system) == typeid(simulated));
}

}  // namespace
}  // namespace KTX::TIM::TEST
