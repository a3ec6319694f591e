#include "leapseconds/KTX_TIM_LeapSecondScopes.h"

#include <boost/make_shared.hpp>

#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_SysTimeClocks.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"

namespace KTX::TIM::TEST {
namespace {

void setDefaultLeapSecond() {
  setUtcLeapSecond(withdrawForcedRecord(), false);
  UtcLeapSecondRecord const record = defaultLeapSecondRecord();
  resetSatelliteLeapSecond(&record);
}

}  // namespace

ScopedLeapSecondsC::ScopedLeapSecondsC() {
  setDefaultLeapSecond();
}

ScopedLeapSecondsC::~ScopedLeapSecondsC() {
  setDefaultLeapSecond();
}

ScopedPresentC::ScopedPresentC(std::int64_t utcMs)
    : systemClock(boost::make_shared<FakeClockC>(utcMs, CLOCKTYPE_POSIX, CLOCKREF_UTC)),
      steadyClock(boost::make_shared<FakeClockC>(0)) {
  setSysTimeClocks(systemClock, steadyClock);
}

ScopedPresentC::~ScopedPresentC() {
  setSysTimeClocks(createClock<boost::milli>(CLOCKTYPE_POSIX, CLOCKREF_UTC),
                   createClock<boost::milli>(CLOCKTYPE_STEADY, CLOCKREF_NONE));
}

void ScopedPresentC::set(std::int64_t utcMs) {
  systemClock->set(utcMs);
  resetSysTime();
}

ChangeRecorderC::ChangeRecorderC()
    : connection(
          connectUtcLeapSecondChanged([this](boost::shared_ptr<UtcLeapSecondChanged> const& event) {
            events.push_back(*event);
          })) {}

UtcLeapSecondRecord recordInForce() {
  UtcLeapSecondRecord record = defaultLeapSecondRecord();
  getUtcLeapSecondAt(GpsC(0, 0), record);
  return record;
}

UtcLeapSecondRecord normalRecord() {
  UtcLeapSecondRecord record = defaultLeapSecondRecord();
  getNormalLeapSecond(record);
  return record;
}

bool operator==(StoreStateC const& a, StoreStateC const& b) {
  return a.inForce == b.inForce && a.normal == b.normal && a.effectivity == b.effectivity &&
         a.countBefore == b.countBefore && a.countFrom == b.countFrom;
}

StoreStateC storeState() {
  StoreStateC state{defaultLeapSecondRecord(), normalRecord(), GPSTimeC(), 0, 0};
  GpsC effectivity;
  getDefaultLeapSecondProvider()->getLeapSecond(GpsC(0, 0), state.inForce, &effectivity);
  state.effectivity = effectivity;
  state.countFrom = effectivity.getLeapSeconds();
  effectivity -= 1;
  state.countBefore = effectivity.getLeapSeconds();
  return state;
}

}  // namespace KTX::TIM::TEST
