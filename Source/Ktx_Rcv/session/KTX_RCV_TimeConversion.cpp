#include "KTX/RCV/KTX_RCV_TimeConversion.h"

#include "KTX/RCV/KTX_RCV_CivilTime.h"
#include "KTX/TIM/KTX_TIM_GpsTime.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"

namespace KTX::RCV {
namespace {

constexpr std::int64_t MS_PER_DAY = 86400000;

}  // namespace

TIM::YmdhmsC utcCalendarOf(std::int64_t unixMs) {
  CivilTimeC const civil = civilTimeOf(unixMs);
  TIM::YmdhmsC calendar = TIM::YmdhmsC::zero(TIM::TIMEBASE_UTC, 1);
  calendar.year = static_cast<std::uint16_t>(civil.year);
  calendar.month = static_cast<std::uint8_t>(civil.month);
  calendar.day = static_cast<std::uint8_t>(civil.day);
  calendar.hour = static_cast<std::uint8_t>(civil.hour);
  calendar.minute = static_cast<std::uint8_t>(civil.minute);
  calendar.second = static_cast<std::uint8_t>(civil.second);
  calendar.milliseconds = civil.nanosecond / 1000000;
  calendar.hundredths = static_cast<std::uint8_t>(calendar.milliseconds / 10);
  return calendar;
}

std::int64_t unixMsOf(TIM::YmdhmsC const& calendar) {
  return daysSince1970(calendar.year, calendar.month, calendar.day) * MS_PER_DAY +
         calendar.hour * 3600000LL + calendar.minute * 60000LL + calendar.second * 1000LL +
         calendar.effectiveMilliseconds();
}

TIM::GpsC gpsOfUtc(TIM::YmdhmsC const& utc, TIM::LeapSecondProviderI& provider) {
  TIM::GpsC gps(&provider);
  gps += TIM::GpsTimeC(utc);
  gps.utcToGps();
  return gps;
}

TIM::YmdhmsC utcOfGps(TIM::GpsC const& gps) {
  TIM::GpsC shifted(gps);
  shifted.gpsToUtc();
  TIM::GpsTimeC utc(shifted);
  utc.setTimeBase(TIM::TIMEBASE_UTC);
  return TIM::YmdhmsC(TIM::MjdTimeC(utc), 1);
}

}  // namespace KTX::RCV
