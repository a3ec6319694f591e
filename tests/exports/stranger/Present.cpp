#include <vector>

#include <boost/make_shared.hpp>

#include "Areas.h"
#include "Check.h"
#include "KTX/TIM/KTX_TIM_Clock.h"
#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "KTX/TIM/KTX_TIM_DefaultCurrentTimeProvider.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"
#include "KTX/TIM/KTX_TIM_PresentStatus.h"
#include "KTX/TIM/KTX_TIM_PresentWarning.h"
#include "KTX/TIM/KTX_TIM_SysTimeClocks.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_TimeEstimate.h"
#include "KTX/TIM/KTX_TIM_Ymdhms.h"

using namespace KTX::TIM;

namespace {

/// A clock of this module's own, read from inside the library.
class ManualClockC : public ClockI<boost::milli> {
 public:
  ManualClockC(std::int64_t startMs, ClockReferenceE clockReference)
      : readingMs(startMs), reference(clockReference) {}

  DurationT now() const override { return DurationT(readingMs); }
  ClockTypeE getType() const override { return CLOCKTYPE_POSIX; }
  ClockReferenceE getReference() const override { return reference; }
  boost::posix_time::ptime getEpoch() const override {
    return boost::posix_time::ptime(boost::gregorian::date(1970, 1, 1));
  }

  std::int64_t readingMs;

 private:
  ClockReferenceE reference;
};

class OwnProviderC : public CurrentTimeProviderI {
 public:
  GPSTimeC getCurrentGpsTime() override { return GPSTimeC(2000, 1); }
  MjdTimeC getCurrentMjdTime() override { return MjdTimeC(GPSTimeC(2000, 1)); }
};

class OwnDefaultProviderC : public DefaultCurrentTimeProviderC {};

void useProvider(CurrentTimeProviderI& provider, GPSTimeC const& expected) {
  CHECK(provider.getCurrentGpsTime() == expected);
  CHECK(provider.getCurrentMjdTime().getTimeBase() == TIMEBASE_GPS);
}

void useObservations() {
  int corrections = 0;
  int week = 0;
  int milliseconds = 0;
  boost::signals2::scoped_connection const connection =
      connectTimeCorrected([&](int newWeek, int newMilliseconds, TimeChangeT change) {
        ++corrections;
        week = newWeek;
        milliseconds = newMilliseconds;
        CHECK(change.count() == 123);
        CHECK(GpsC::currentTime().getWeek() == 2304);
      });
  CHECK(GpsC(2304, 374963123).makeToCurrentTime(0, 1) == 0);
  CHECK(corrections == 1 && week == 2304 && milliseconds == 374963123);
  YmdhmsC present = YmdhmsC::zero(TIMEBASE_LOCAL, 1);
  present.makeToCurrentTime();
  CHECK(present.milliseconds == 123 && present.dayOfWeek == 0);
  present.setToCurrentTime();
  CHECK(present.dayOfWeek == 5);
  CHECK(present.makeToCurrentTime(10) == 0 && corrections == 1);
  CHECK(YmdhmsC().timeBase == TIMEBASE_GPS);
  GpsC now;
  now.makeToCurrentTime();
  CHECK(now == GPSTimeC(2304, 374963123));
  CHECK(GpsC(std::uint32_t{83123}).getMsOfWeek() == 374963123 / 240000 * 240000 + 83123);
  // Not UTC: refused before the clock of the machine is touched.
  CHECK(!YmdhmsC::zero(TIMEBASE_LOCAL).applyToCurrentSystemTime());
}

void useSteps() {
  std::vector<TimeEstimateStepC> steps;
  boost::signals2::scoped_connection const connection =
      connectTimeEstimated([&](TimeEstimateStepC const& step) { steps.push_back(step); });
  PresentStatusC const before = getPresentStatus();
  CHECK(before.steadyMs == 1000000 && before.correctedCount == 1);
  CHECK(before.observationAgeMs == 0 && before.correctionAgeMs == 0);
  CHECK(GpsC(2304, 374963123).makeToCurrentTime(10, 1) == 0);
  CHECK(steps.size() == 1 && steps[0].verdict == TIMEVERDICT_UNCHANGED);
  CHECK(steps[0].number > 0 && !steps[0].resetByOutlier && steps[0].differenceMs == 0);
  CHECK(getPresentStatus().unchangedCount == before.unchangedCount + 1);
}

void useTimeSignal() {
  int signals = 0;
  boost::signals2::scoped_connection const connection =
      connectTimeSignal([&](int week, int milliseconds) {
        ++signals;
        CHECK(week == 2000 && milliseconds == 120);
      });
  CHECK(GpsC(2000, 120).emitTimeSignal() == 0);
  CHECK(YmdhmsC(GPSTimeC(2000, 120)).emitTimeSignal() == 0);
  CHECK(signals == 2);
}

}  // namespace

void usePresent() {
  auto const system = boost::make_shared<ManualClockC>(1709798945000, CLOCKREF_UTC);
  auto const steady = boost::make_shared<ManualClockC>(1000000, CLOCKREF_NONE);
  setSysTimeClocks(system, steady);
  resetSysTime();
  OwnProviderC own;
  DefaultCurrentTimeProviderC standard;
  OwnDefaultProviderC derived;
  useProvider(own, GPSTimeC(2000, 1));
  useProvider(standard, GPSTimeC(2304, 374963000));
  useProvider(derived, GPSTimeC(2304, 374963000));
  useObservations();
  useSteps();
  useTimeSignal();
  setPresentWarningEnabled(false);
  steady->readingMs += 86400001;
  CHECK(GpsC::currentTime().getWeek() == 2304);
  setPresentWarningEnabled(true);
  setSysTimeClocks(createClock<boost::milli>(CLOCKTYPE_POSIX, CLOCKREF_DEFAULT),
                   createClock<boost::milli>(CLOCKTYPE_STEADY, CLOCKREF_DEFAULT));
  CHECK(system.use_count() == 1 && steady.use_count() == 1);
}
