#include "KTX/TIM/KTX_TIM_DefaultCurrentTimeProvider.h"

#include <memory>

#include <gtest/gtest.h>

#include "KTX/TIM/KTX_TIM_GpsTimeValue.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "common/KTX_TIM_FakePresent.h"

namespace KTX::TIM::TEST {
namespace {

TEST(DefaultCurrentTimeProvider, GivesThePresentInBothForms) {
  FakePresentC const present(FakePresentC::THURSDAY_MS + 123);
  std::unique_ptr<CurrentTimeProviderI> const provider =
      std::make_unique<DefaultCurrentTimeProviderC>();
  EXPECT_EQ(GPSTimeC(2304, 374963123), provider->getCurrentGpsTime());
  MjdTimeC const day = provider->getCurrentMjdTime();
  EXPECT_EQ(TIMEBASE_GPS, day.getTimeBase());
  EXPECT_EQ(2304 * 7.0 + 44244.0 + 374963123 / 1000.0 / 86400.0, day.getDayNumber());
}

TEST(DefaultCurrentTimeProvider, FollowsTheClock) {
  FakePresentC const present;
  DefaultCurrentTimeProviderC provider;
  present.steady->advanceMs(86400000);
  EXPECT_EQ(GPSTimeC(2304, 374963000 + 86400000), provider.getCurrentGpsTime());
  EXPECT_EQ(2304 * 7.0 + 44244.0 + 461363000 / 1000.0 / 86400.0,
            provider.getCurrentMjdTime().getDayNumber());
}

}  // namespace
}  // namespace KTX::TIM::TEST
