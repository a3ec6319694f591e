#ifndef KTX_RCV_HELDCLOCK_H
#define KTX_RCV_HELDCLOCK_H

#include <atomic>
#include <cstdint>

#include <boost/date_time/posix_time/posix_time_types.hpp>
#include <boost/ratio/ratio.hpp>

#include "KTX/TIM/KTX_TIM_Clock.h"

namespace KTX::RCV {

/// A clock that stands at the reading it was given. With two of them the library sees one moment
/// during the whole work on one message.
class HeldClockC : public TIM::ClockI<boost::milli> {
 public:
  /// isCalendar: counts milliseconds since 1970-01-01 UTC, else from an arbitrary zero.
  explicit HeldClockC(bool isCalendar);
  ~HeldClockC() override;

  void hold(std::int64_t readingMs);

  DurationT now() const override;
  TIM::ClockTypeE getType() const override;
  TIM::ClockReferenceE getReference() const override;
  boost::posix_time::ptime getEpoch() const override;

 private:
  bool const countsCalendar;
  std::atomic<std::int64_t> heldMs{0};
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_HELDCLOCK_H
