#include "KTX/TIM/KTX_TIM_UtcLeapSecondProvider.h"

#include <cstdlib>

#include "KTX/TIM/KTX_TIM_Gps.h"
#include "KTX/TIM/KTX_TIM_Guard.h"
#include "KTX/TIM/KTX_TIM_LogAssert.h"
#include "KTX/TIM/KTX_TIM_ResultCode.h"
#include "KTX/TIM/KTX_TIM_UtcLeapSecondRecord.h"
#include "leapseconds/KTX_TIM_LeapSecondEffectivity.h"
#include "values/KTX_TIM_DayNumber.h"

namespace KTX::TIM {
namespace {

void setEffectivityDate(UtcLeapSecondRecord& record, std::int32_t firstDayMjd) {
  if (firstDayMjd < 1) {
    record.week = 0;
    record.day = 0;
    record.effectivityKnown = false;
    return;
  }
  setEffectivityDayBefore(record, gpsTimeOf(firstDayMjd));
}

void setSiteValue(UtcLeapSecondRecord& record,
                  std::int16_t current,
                  std::int16_t future,
                  std::int32_t effectivityDate) {
  record.source = LEAPSECOND_SITE;
  record.current = current;
  if (future == 0 || std::abs(future - current) > 1) {
    record.future = current;  // The effectivity stays as it was.
    return;
  }
  record.future = future;
  setEffectivityDate(record, effectivityDate);
}

}  // namespace

UtcLeapSecondProvider::UtcLeapSecondProvider() = default;

UtcLeapSecondProvider::~UtcLeapSecondProvider() = default;

std::uint32_t UtcLeapSecondProvider::getLeapSecond(GpsC const& time,
                                                   UtcLeapSecondRecord& record,
                                                   GpsC* effectivity) {
  bool hasSiteRecord = false;
  {
    Guard const guard(mutex);
    hasSiteRecord = siteRecord != nullptr;
    if (hasSiteRecord) {
      record = *siteRecord;
    }
  }
  // The own lock is free by now: a listener that holds the store's may ask this provider.
  if (!hasSiteRecord) {
    return getDefaultLeapSecondProvider()->getLeapSecond(time, record, effectivity);
  }
  if (record.day == 0) {
    logAssertion("Site leap second has no known effectivity!");
  }
  GpsC instant(this);
  instant += effectivityInstant(record);
  if (record.effectivityKnown && time >= instant) {
    record.current = record.future;
  }
  if (effectivity != nullptr) {
    *effectivity = instant;
  }
  return RC_OK;
}

std::uint32_t UtcLeapSecondProvider::setSiteLeapSecond(std::int16_t current,
                                                       std::int16_t future,
                                                       std::int32_t effectivityDate) {
  {
    Guard const guard(mutex);
    if (!siteRecord) {
      siteRecord = std::make_unique<UtcLeapSecondRecord>(defaultLeapSecondRecord());
    }
    if (current != 0) {
      setSiteValue(*siteRecord, current, future, effectivityDate);
      return RC_OK;
    }
  }
  logAssertion("Site leap second is zero!");
  return RC_FAILED;
}

}  // namespace KTX::TIM
