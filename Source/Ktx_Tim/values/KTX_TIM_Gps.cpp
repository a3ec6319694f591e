#include "KTX/TIM/KTX_TIM_Gps.h"

#include "KTX/TIM/KTX_TIM_LeapSecondProvider.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "values/KTX_TIM_WeekTime.h"

namespace KTX::TIM {
namespace {

struct LeapSecondAnswerC {
  explicit LeapSecondAnswerC(LeapSecondProviderI* provider)
      : record(defaultLeapSecondRecord()), effectivity(provider) {}

  UtcLeapSecondRecord record;
  GpsC effectivity;
};

WeekTimeC plain(GPSTimeC const& time) {
  return {time.getWeek(), time.getMsOfWeek()};
}

bool queryLeapSecond(LeapSecondProviderI* provider, GpsC const& time, LeapSecondAnswerC& answer) {
  if (provider->getLeapSecond(time, answer.record, &answer.effectivity) != 0) {
    logAssertion("Leap second query failed!");
    return false;
  }
  return true;
}

}  // namespace

GpsC::GpsC() : provider(getDefaultLeapSecondProvider()) {}

GpsC::GpsC(std::uint16_t newWeek, std::uint32_t newMsOfWeek)
    : GPSTimeC(newWeek, newMsOfWeek), provider(getDefaultLeapSecondProvider()) {}

GpsC::GpsC(GPSTimeC const& time) : GpsC(time.getWeek(), time.getMsOfWeek()) {}

GpsC::GpsC(GpsC const& other) = default;

GpsC::GpsC(LeapSecondProviderI* leapSecondProvider) : provider(leapSecondProvider) {
  if (provider == nullptr) {
    logAssertion();
  }
}

GpsC::~GpsC() = default;

GpsC& GpsC::operator=(GpsC const& other) = default;

GpsC& GpsC::operator=(GPSTimeC const& time) {
  GPSTimeC::operator=(time);
  provider = getDefaultLeapSecondProvider();
  return *this;
}

std::int8_t GpsC::getLeapSeconds() const {
  if (provider == nullptr) {
    logAssertion();
    return 0;
  }
  UtcLeapSecondRecord record = defaultLeapSecondRecord();
  // A failed query is not told apart: what the provider left in the record counts.
  provider->getLeapSecond(*this, record);
  return static_cast<std::int8_t>(record.current);
}

void GpsC::gpsToUtc() {
  if (provider == nullptr) {
    logAssertion();
    return;
  }
  LeapSecondAnswerC answer(provider);
  if (!queryLeapSecond(provider, *this, answer)) {
    return;
  }
  std::int32_t const current = answer.record.current;
  std::int32_t const future = answer.record.future;
  if (!answer.record.effectivityKnown || current == future) {
    addSeconds(-current);
    return;
  }
  WeekTimeC threshold = plain(answer.effectivity);
  if (current < future) {
    threshold = shifted(threshold, -(future - current));
  }
  addSeconds(isBefore(plain(*this), threshold) ? -current : -future);
}

void GpsC::utcToGps() {
  if (provider == nullptr) {
    logAssertion();
    return;
  }
  LeapSecondAnswerC answer(provider);
  if (!queryLeapSecond(provider, *this, answer)) {
    return;
  }
  std::int32_t const current = answer.record.current;
  std::int32_t const future = answer.record.future;
  if (!answer.record.effectivityKnown) {
    addSeconds(current);
    return;
  }
  WeekTimeC const time = plain(*this);
  if (!isBefore(time, shifted(plain(answer.effectivity), -future))) {
    WeekTimeC const gps = shifted(time, future);
    setRaw(gps.week, gps.msOfWeek);
    return;
  }
  if (current != future) {
    addSeconds(current);
    return;
  }
  // The record at this instant has the new count already: ask for the count before the change.
  answer.effectivity -= 1;
  LeapSecondAnswerC before(provider);
  if (queryLeapSecond(provider, answer.effectivity, before)) {
    addSeconds(before.record.current);
  }
}

}  // namespace KTX::TIM
