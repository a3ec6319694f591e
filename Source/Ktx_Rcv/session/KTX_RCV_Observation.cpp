#include "KTX/RCV/KTX_RCV_Observation.h"

#include "KTX/RCV/KTX_RCV_CivilTime.h"
#include "KTX/RCV/KTX_RCV_TimeConversion.h"
#include "KTX/TIM/KTX_TIM_MjdTime.h"

namespace KTX::RCV {
namespace {

constexpr std::int64_t NS_PER_MS = 1000000;
constexpr std::int64_t MS_PER_SECOND = 1000;
constexpr std::uint8_t LEAP_SECOND = 60;
constexpr std::int64_t FIRST_UNIX_MS = 315964800000;                       // 1980-01-06
constexpr std::int64_t END_UNIX_MS = FIRST_UNIX_MS + 65535LL * 604800000;  // with a week to spare

std::int64_t roundedMs(std::int64_t nanoseconds) {
  std::int64_t const half = NS_PER_MS / 2;
  return (nanoseconds >= 0 ? nanoseconds + half : nanoseconds - half) / NS_PER_MS;
}

TIM::GpsC gpsOf(ReceiverMessageC const& event) {
  TIM::GpsC gps(static_cast<std::uint16_t>(event.week), 0);
  gps += roundedMs(event.nanosecondOfWeek);
  return gps;
}

std::int64_t roundedUnixMs(CivilTimeC const& time) {
  return secondsSince1970(time) * 1000 + roundedMs(time.nanosecond);
}

// A leap second is shown as second 60, not as the first second of the next day.
TIM::YmdhmsC calendarOf(CivilTimeC const& time, std::int64_t unixMs) {
  if (time.second != LEAP_SECOND) {
    return utcCalendarOf(unixMs);
  }
  TIM::YmdhmsC calendar = utcCalendarOf(unixMs - MS_PER_SECOND);
  // Milliseconds that were rounded up lead to the next minute.
  calendar.second = calendar.second == LEAP_SECOND - 1 ? LEAP_SECOND : calendar.second;
  return calendar;
}

}  // namespace

ObservationC::ObservationC(ReceiverMessageC const& event)
    : statesGps(event.timeForm == TIMEFORM_GPS),
      calendar(TIM::YmdhmsC::zero(TIM::TIMEBASE_UTC, 1)),
      statedUnixMs(0) {
  if (statesGps) {
    statedGps = gpsOf(event);
    calendar = utcOfGps(statedGps);
    statedUnixMs = unixMsOf(calendar);
  } else {
    statedUnixMs = roundedUnixMs(event.utc);
    calendar = calendarOf(event.utc, statedUnixMs);
  }
}

bool ObservationC::isInRange() const {
  return statedUnixMs >= FIRST_UNIX_MS && statedUnixMs < END_UNIX_MS;
}

double ObservationC::utcDayNumber() const {
  return TIM::MjdTimeC(calendar).getDayNumber();
}

TIM::GpsC ObservationC::gps(TIM::LeapSecondProviderI& provider) const {
  if (statesGps) {
    return statedGps;
  }
  if (calendar.second != LEAP_SECOND) {
    return gpsOfUtc(calendar, provider);
  }
  TIM::YmdhmsC before(calendar);
  --before.second;
  TIM::GpsC gps = gpsOfUtc(before, provider);
  gps += MS_PER_SECOND;
  return gps;
}

void ObservationC::makeToCurrentTime(std::int64_t noiseMs) const {
  if (statesGps) {
    statedGps.makeToCurrentTime(noiseMs, 1);
  } else {
    calendar.makeToCurrentTime(noiseMs);
  }
}

}  // namespace KTX::RCV
