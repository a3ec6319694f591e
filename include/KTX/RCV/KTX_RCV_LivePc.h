#ifndef KTX_RCV_LIVEPC_H
#define KTX_RCV_LIVEPC_H

#include <boost/ratio/ratio.hpp>
#include <boost/shared_ptr.hpp>

#include "KTX/RCV/KTX_RCV_Api.h"
#include "KTX/RCV/KTX_RCV_HostPc.h"
#include "KTX/RCV/KTX_RCV_PcClock.h"
#include "KTX/TIM/KTX_TIM_Clock.h"

namespace KTX::RCV {

/// This machine with its own clocks: a message arrives when it is read.
class KTX_RCV_API LivePcC : public HostPcI, public PcClockI {
 public:
  LivePcC();

  std::optional<PcReadingC> arrive(ArrivalC const& arrival) override;
  bool set(TIM::YmdhmsC const& utc) override;

 private:
  boost::shared_ptr<TIM::ClockI<boost::milli>> const systemClock;
  boost::shared_ptr<TIM::ClockI<boost::milli>> const steadyClock;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_LIVEPC_H
