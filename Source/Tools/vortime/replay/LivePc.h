#ifndef KTX_VORTIME_LIVEPC_H
#define KTX_VORTIME_LIVEPC_H

#include <boost/ratio/ratio.hpp>
#include <boost/shared_ptr.hpp>

#include "KTX/TIM/KTX_TIM_Clock.h"
#include "replay/HostPc.h"
#include "replay/PcClock.h"

namespace KTX::VORTIME {

/// This machine with its own clocks: a message arrives when it is read.
class LivePcC : public HostPcI, public PcClockI {
 public:
  LivePcC();

  std::optional<PcReadingC> arrive(ArrivalC const& arrival) override;
  bool set(TIM::YmdhmsC const& utc) override;

 private:
  boost::shared_ptr<TIM::ClockI<boost::milli>> const systemClock;
  boost::shared_ptr<TIM::ClockI<boost::milli>> const steadyClock;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_LIVEPC_H
