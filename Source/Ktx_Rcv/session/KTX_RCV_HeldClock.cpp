#include "session/KTX_RCV_HeldClock.h"

namespace KTX::RCV {

HeldClockC::HeldClockC(bool isCalendar) : countsCalendar(isCalendar) {}
HeldClockC::~HeldClockC() = default;

void HeldClockC::hold(std::int64_t readingMs) {
  heldMs = readingMs;
}

HeldClockC::DurationT HeldClockC::now() const {
  return DurationT(heldMs.load());
}

TIM::ClockTypeE HeldClockC::getType() const {
  return countsCalendar ? TIM::CLOCKTYPE_POSIX : TIM::CLOCKTYPE_STEADY;
}

TIM::ClockReferenceE HeldClockC::getReference() const {
  return countsCalendar ? TIM::CLOCKREF_UTC : TIM::CLOCKREF_NONE;
}

boost::posix_time::ptime HeldClockC::getEpoch() const {
  return countsCalendar ? boost::posix_time::ptime(boost::gregorian::date(1970, 1, 1))
                        : boost::posix_time::ptime();
}

}  // namespace KTX::RCV
