#include "KTX/RCV/KTX_RCV_LivePc.h"

#include "KTX/TIM/KTX_TIM_ClockFactory.h"

namespace KTX::RCV {

LivePcC::LivePcC()
    : systemClock(TIM::createClock<boost::milli>(TIM::CLOCKTYPE_POSIX, TIM::CLOCKREF_UTC)),
      steadyClock(TIM::createClock<boost::milli>(TIM::CLOCKTYPE_STEADY, TIM::CLOCKREF_DEFAULT)) {}

std::optional<PcReadingC> LivePcC::arrive(ArrivalC const& /*arrival*/) {
  PcReadingC reading;
  reading.systemUnixMs = systemClock->now().count();
  reading.steadyMs = steadyClock->now().count();
  reading.isCalendarKnown = true;
  return reading;
}

bool LivePcC::set(TIM::YmdhmsC const& utc) {
  return utc.applyToCurrentSystemTime();
}

}  // namespace KTX::RCV
