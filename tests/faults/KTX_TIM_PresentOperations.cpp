#include <boost/make_shared.hpp>

#include "KTX/TIM/KTX_TIM_ClockFactory.h"
#include "KTX/TIM/KTX_TIM_DefaultCurrentTimeProvider.h"
#include "KTX/TIM/KTX_TIM_PresentStatus.h"
#include "KTX/TIM/KTX_TIM_StopWatch.h"
#include "KTX/TIM/KTX_TIM_SysTimeClocks.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_TimeEstimate.h"
#include "common/KTX_TIM_SystemTimeRoom.h"
#include "faults/KTX_TIM_FaultListener.h"
#include "faults/KTX_TIM_FaultOperation.h"
#include "faults/KTX_TIM_FaultStage.h"

namespace KTX::TIM::TEST {
namespace {

constexpr std::uint16_t WEEK = 2304;
constexpr std::uint32_t NOW_MS = 374963000;

YmdhmsC observed(TimeBaseE timeBase, std::uint32_t aheadMs) {
  YmdhmsC observation(MjdTimeC(GPSTimeC(WEEK, NOW_MS + aheadMs)), 1);
  if (timeBase != TIMEBASE_GPS) {
    observation.toUtc();
  }
  if (timeBase == TIMEBASE_LOCAL) {
    observation.utcToLocal();
  }
  return observation;
}

FaultOperationC observing(std::string const& name, TimeBaseE timeBase, std::uint32_t aheadMs) {
  return {name, [timeBase, aheadMs](FaultStageC& /*stage*/) {
            YmdhmsC const observation = observed(timeBase, aheadMs);
            return CallC{[observation] { observation.makeToCurrentTime(0); }, {}};
          }};
}

FaultOperationsT observationOperations() {
  FaultOperationC local = observing("a local observation", TIMEBASE_LOCAL, 2500);
  local.hasOwnOutcome = true;
  return {plain("GpsC::makeToCurrentTime, released",
                [] { GpsC(WEEK, NOW_MS + 2500).makeToCurrentTime(0, 1); }),
          plain("GpsC::makeToCurrentTime, to hundredths",
                [] { GpsC(WEEK, NOW_MS + 2500).makeToCurrentTime(0, 0); }),
          plain("GpsC::makeToCurrentTime, not released",
                [] { GpsC(WEEK, NOW_MS + 40).makeToCurrentTime(10, 1); }),
          plain("GpsC::makeToCurrentTime, too uncertain",
                [] { GpsC(WEEK, NOW_MS + 2500).makeToCurrentTime(2000, 1); }),
          observing("an observation in GPS time", TIMEBASE_GPS, 2500),
          observing("an observation in UTC", TIMEBASE_UTC, 2500),
          local};
}

FaultOperationsT readOperations() {
  YmdhmsC const zero = YmdhmsC::zero(TIMEBASE_UTC, 1);
  return {
      plain("GpsC::currentTime", [] { GpsC::currentTime(); }),
      plain("GpsC in a frame", [] { GpsC const value(std::uint32_t{1000}); }),
      changing("GpsC::makeToCurrentTime", GpsC(1, 2),
               [](GpsC& value) { value.makeToCurrentTime(); }),
      plain("YmdhmsC of the present", [] { YmdhmsC const value; }),
      changing("YmdhmsC::makeToCurrentTime", zero,
               [](YmdhmsC& value) { value.makeToCurrentTime(); }),
      changing("YmdhmsC::setToCurrentTime", zero, [](YmdhmsC& value) { value.setToCurrentTime(); }),
      plain("DefaultCurrentTimeProviderC",
            [] {
              DefaultCurrentTimeProviderC provider;
              provider.getCurrentGpsTime();
              provider.getCurrentMjdTime();
            }),
      plain("getPresentStatus", [] { getPresentStatus(); })};
}

FaultOperationsT clockOperations() {
  return {
      plain("resetSysTime", [] { resetSysTime(); }),
      {"resetSysTime to another time",
       [](FaultStageC& stage) {
         stage.present.utc->advance(5000);
         return CallC{[] { resetSysTime(); }, {}};
       }},
      {"setSysTimeClocks",
       [](FaultStageC& /*stage*/) {
         auto const utc = boost::make_shared<FakeClockC>(FakePresentC::THURSDAY_MS + 5000,
                                                         CLOCKTYPE_POSIX, CLOCKREF_UTC);
         auto const steady = boost::make_shared<FakeClockC>(5);
         return CallC{[utc, steady] { setSysTimeClocks(utc, steady); }, {}};
       }},
      {"setSysTimeClocks of clocks that throw",
       [](FaultStageC& stage) {
         return CallC{[&stage] { setSysTimeClocks(stage.present.utc, stage.present.steady); }, {}};
       }},
      {"setSysTimeClocks of a clock without an epoch",
       [](FaultStageC& stage) {
         auto const counter = boost::make_shared<FakeClockC>(FakePresentC::THURSDAY_MS + 5000);
         return CallC{[&stage, counter] { setSysTimeClocks(counter, stage.present.steady); }, {}};
       }},
      plain("setSysTimeClocks of none", [] { setSysTimeClocks(nullptr, nullptr); })};
}

FaultOperationsT signalOperations() {
  return {
      plain("GpsC::emitTimeSignal", [] { GpsC(WEEK, NOW_MS).emitTimeSignal(); }),
      plain("YmdhmsC::emitTimeSignal", [] { observed(TIMEBASE_GPS, 0).emitTimeSignal(); }),
      {"YmdhmsC::emitTimeSignal of a local value",
       [](FaultStageC& /*stage*/) {
         YmdhmsC const local = observed(TIMEBASE_LOCAL, 0);
         return CallC{[local] { local.emitTimeSignal(); }, {}};
       }},
      connecting(
          "connectTimeCorrected",
          [](FaultListenerC& listener) {
            listener.connection =
                connectTimeCorrected([&listener](int, int, TimeChangeT) { ++listener.heard; });
          },
          [] { GpsC(WEEK, NOW_MS + 3600000).makeToCurrentTime(0, 1); }),
      connecting(
          "connectTimeEstimated",
          [](FaultListenerC& listener) {
            listener.connection =
                connectTimeEstimated([&listener](TimeEstimateStepC const&) { ++listener.heard; });
          },
          [] { GpsC(WEEK, NOW_MS).makeToCurrentTime(10, 1); }),
      connecting(
          "connectTimeSignal",
          [](FaultListenerC& listener) {
            listener.connection = connectTimeSignal([&listener](int, int) { ++listener.heard; });
          },
          [] { GpsC(WEEK, 0).emitTimeSignal(); })};
}

template <class Period>
FaultOperationC creatingClock(std::string const& name,
                              std::uint32_t type,
                              std::uint32_t reference) {
  return plain(name, [type, reference] {
    auto const clock =
        createClock<Period>(static_cast<ClockTypeE>(type), static_cast<ClockReferenceE>(reference));
    if (clock) {
      clock->now();
      clock->getEpoch();
    }
  });
}

FaultOperationsT clockFactoryOperations() {
  FaultOperationsT operations;
  for (std::uint32_t const type : {1U, 2U, 3U, 4U}) {
    for (std::uint32_t const reference : {1U, 2U, 3U, 7U}) {
      std::string const name =
          "createClock(" + std::to_string(type) + ", " + std::to_string(reference) + ")";
      operations.push_back(creatingClock<boost::milli>(name + " in ms", type, reference));
      operations.push_back(creatingClock<boost::nano>(name + " in ns", type, reference));
    }
  }
  return operations;
}

std::string textOf(StopWatchC const& watch) {
  return std::to_string(watch.isStarted()) + " " + std::to_string(watch.elapsed());
}

template <class ActionT>
FaultOperationC timing(std::string const& name, ActionT const& action) {
  return {name, [action](FaultStageC& stage) {
            auto const clock = boost::make_shared<FakeNanoClockC>(7);
            auto const watch = std::make_shared<StopWatchC>(clock);
            watch->start();
            watch->stop();
            clock->advance(5);
            clock->setHook([&stage] { stage.point.reach(FAULT_CALLBACK); });
            return CallC{[watch, action] { action(*watch); }, [watch] { return textOf(*watch); }};
          }};
}

FaultOperationsT stopWatchOperations() {
  return {timing("StopWatchC::start", [](StopWatchC& watch) { watch.start(); }),
          timing("StopWatchC::stop", [](StopWatchC& watch) { watch.stop(); }),
          plain("StopWatchC",
                [] {
                  StopWatchC watch;
                  watch.start();
                  watch.isStarted();
                  watch.elapsedMs();
                  StopWatchC copy(watch);
                  copy.stop();
                  watch = copy;
                }),
          plain("StopWatchC without a clock", [] {
            StopWatchC watch(static_cast<ClockTypeE>(4), CLOCKREF_NONE);
            watch.start();
            watch.stop();
            watch.elapsed();
          })};
}

FaultOperationsT systemTimeOperations() {
  return {plain("getLocalSystemTime",
                [] {
                  SystemTimeRoomC room;
                  getLocalSystemTime(room.asSystemTime());
                }),
          plain("getUtcSystemTime",
                [] {
                  SystemTimeRoomC room;
                  getUtcSystemTime(room.asSystemTime());
                }),
          plain("setUtcSystemTime",
                [] {
                  SystemTimeRoomC room;
                  setUtcSystemTime(room.asSystemTime());
                }),
          plain("YmdhmsC::applyToCurrentSystemTime",
                [] { observed(TIMEBASE_UTC, 0).applyToCurrentSystemTime(); }),
          plain("YmdhmsC::applyToCurrentSystemTime in GPS time",
                [] { observed(TIMEBASE_GPS, 0).applyToCurrentSystemTime(); })};
}

}  // namespace

FaultOperationsT presentOperations() {
  FaultOperationsT operations;
  for (auto const& group :
       {observationOperations(), readOperations(), clockOperations(), signalOperations(),
        clockFactoryOperations(), stopWatchOperations(), systemTimeOperations()}) {
    operations.insert(operations.end(), group.begin(), group.end());
  }
  return operations;
}

}  // namespace KTX::TIM::TEST
