#include "faults/KTX_TIM_FaultStage.h"

#include <algorithm>
#include <limits>
#include <sstream>
#include <thread>

#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_PresentStatus.h"
#include "KTX/TIM/KTX_TIM_TimeCorrection.h"
#include "KTX/TIM/KTX_TIM_TimeEstimate.h"
#include "KTX/TIM/KTX_TIM_TimeLock.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondChanged.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSeconds.h"
#include "common/KTX_TIM_LogCapture.h"
#include "timezones/KTX_TIM_ZoneLayout.h"

namespace KTX::TIM::TEST {
namespace {

constexpr wchar_t const* SYSTEM_ZONE = L"Tokyo Standard Time";

std::string narrow(std::wstring const& text) {
  return {text.begin(), text.end()};
}

void setLeapSeconds() {
  setUtcLeapSecond(withdrawForcedRecord(), false);
  UtcLeapSecondRecord const start{LEAPSECOND_GPS, 18, 18, 2303, 5, true};  // 2024-02-29
  resetSatelliteLeapSecond(&start);
}

std::ostream& operator<<(std::ostream& stream, UtcLeapSecondRecord const& record) {
  return stream << leapSecondSourceName(record.source) << ' ' << record.current << ' '
                << record.future << ' ' << record.week << ' ' << int{record.day} << ' '
                << record.effectivityKnown;
}

void describeLeapSeconds(std::ostream& stream) {
  UtcLeapSecondRecord record{};
  GpsC effectivity;
  getDefaultLeapSecondProvider()->getLeapSecond(GpsC(0, 0), record, &effectivity);
  stream << "in force " << record << " from " << textOf(GPSTimeC(effectivity));
  getNormalLeapSecond(record);
  stream << ", normal " << record << '\n';
}

void describePresent(std::ostream& stream) {
  GpsC now = GpsC::currentTime();
  stream << "present " << textOf(GPSTimeC(now));
  now.gpsToUtc();
  stream << ", in UTC " << textOf(GPSTimeC(now)) << '\n';
  PresentStatusC const status = getPresentStatus();
  stream << "steps " << status.unchangedCount << ' ' << status.tooUncertainCount << ' '
         << status.correctedCount << ", ages " << status.observationAgeMs.value_or(-1) << ' '
         << status.correctionAgeMs.value_or(-1) << '\n';
}

// The filter shows itself in the data line of one more observation.
void describeFilter(std::ostream& stream, FakePresentC const& present) {
  LogCaptureC log;
  log.setThreshold(LogCaptureC::OFF);
  log.setThreshold("TimeEstimatorData", 4);
  present.steady->advance(60000);
  GpsC::currentTime().makeToCurrentTime(10, 1);
  for (std::string const& line : log.lines("TimeEstimatorData")) {
    stream << line;
  }
}

// Each connect() frees one or two of what is disconnected, and leaves one more: after some rounds
// the least that there can be has been seen, and the rounds end there.
template <class ConnectT>
void settleSignal(AllocationWatchC const& watch, ConnectT const& connect) {
  constexpr int ROUNDS = 8;
  std::ptrdiff_t least = std::numeric_limits<std::ptrdiff_t>::max();
  for (int i = 0; i < ROUNDS; ++i) {
    connect().disconnect();
    least = std::min(least, watch.balance());
  }
  for (int i = 0; i < ROUNDS && watch.balance() != least; ++i) {
    connect().disconnect();
  }
}

}  // namespace

std::uint32_t FaultProviderC::getLeapSecond(GpsC const& time,
                                            UtcLeapSecondRecord& record,
                                            GpsC* effectivity) {
  point.reach(FAULT_CALLBACK);
  return getDefaultLeapSecondProvider()->getLeapSecond(time, record, effectivity);
}

FaultStageC::FaultStageC() {
  addFourZones(registry);
  registry.calls.setZone(-540, u"Tokyo Standard Time");
  getTimeZoneInstance().setTimeZone(SYSTEM_ZONE);
  zone.setTimeZone(L"GMT Standard Time");
  setLeapSeconds();
  present.seed(FakePresentC::THURSDAY_MS);

  registry.calls.setHook([this](SystemCallE call) {
    if (call != CALL_CLOSEKEY) {  // a destructor calls it
      point.reach(FAULT_CALL_THROWS);
    }
  });
  present.utc->setHook([this] { point.reach(FAULT_CALLBACK); });
  present.steady->setHook([this] { point.reach(FAULT_CALLBACK); });

  listeners.emplace_back(connectTimeCorrected([this](int, int, TimeChangeT) { count(0); }));
  listeners.emplace_back(connectTimeSignal([this](int, int) { count(1); }));
  listeners.emplace_back(connectUtcLeapSecondChanged(
      [this](boost::shared_ptr<UtcLeapSecondChanged> const&) { count(2); }));
  listeners.emplace_back(zone.connectTimeZoneChanged([this] { count(3); }));
  listeners.emplace_back(getTimeZoneInstance().connectTimeZoneChanged([this] { count(4); }));
  listeners.emplace_back(connectTimeEstimated([this](TimeEstimateStepC const&) { count(5); }));
}

FaultStageC::~FaultStageC() {
  setLeapSeconds();
}

void FaultStageC::settle(AllocationWatchC const& watch) {
  settleSignal(watch, [] { return connectTimeCorrected([](int, int, TimeChangeT) {}); });
  settleSignal(watch, [] { return connectTimeSignal([](int, int) {}); });
  settleSignal(watch, [] { return connectTimeEstimated([](TimeEstimateStepC const&) {}); });
  settleSignal(watch, [] {
    return connectUtcLeapSecondChanged([](boost::shared_ptr<UtcLeapSecondChanged> const&) {});
  });
  settleSignal(watch, [] { return getTimeZoneInstance().connectTimeZoneChanged([] {}); });
}

std::string FaultStageC::state(CallC const& call) {
  std::ostringstream stream;
  std::thread([&] {
    { Guard const guard(getTimeLock()); }
    stream << "heard";
    for (int const times : heard) {
      stream << ' ' << times;
    }
    std::wstring name;
    getTimeZoneInstance().getTimeZone(name);
    stream << "\nzone " << narrow(name) << '\n';
    describeLeapSeconds(stream);
    describePresent(stream);
    if (call.state) {
      stream << "on " << call.state() << '\n';
    }
    describeFilter(stream, present);
  }).join();
  return stream.str();
}

void FaultStageC::count(std::size_t signal) {
  ++heard[signal];
  point.reach(FAULT_LISTENER);
}

}  // namespace KTX::TIM::TEST
