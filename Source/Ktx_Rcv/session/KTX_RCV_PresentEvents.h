#ifndef KTX_RCV_PRESENTEVENTS_H
#define KTX_RCV_PRESENTEVENTS_H

#include <cstdint>
#include <vector>

#include <boost/signals2/connection.hpp>

#include "KTX/RCV/KTX_RCV_ClockSetter.h"
#include "KTX/RCV/KTX_RCV_EstimateSink.h"
#include "KTX/RCV/KTX_RCV_SessionCounts.h"
#include "KTX/RCV/KTX_RCV_SessionListener.h"
#include "KTX/TIM/KTX_TIM_TimeEstimate.h"

namespace KTX::RCV {

/// What the time library announces of its present while it works on a message, kept until the
/// session tells the message itself.
class PresentEventsC {
 public:
  /// All must outlive the object; estimateSink may be null.
  PresentEventsC(SessionListenerI& sessionListener,
                 EstimateSinkI* estimateSink,
                 SessionCountsC& sessionCounts);
  PresentEventsC(PresentEventsC const&) = delete;
  PresentEventsC& operator=(PresentEventsC const&) = delete;

  /// Each correction is told to the setter at once.
  void setClockSetter(ClockSetterC& setter) { clockSetter = &setter; }

  /// The last step of the estimate; number 0 before the first.
  TIM::TimeEstimateStepC const& last() const { return lastStep; }

  void handOverSteps();
  void reportCorrections();

 private:
  SessionListenerI& listener;
  EstimateSinkI* const estimates;
  SessionCountsC& counts;
  ClockSetterC* clockSetter = nullptr;
  std::vector<TIM::TimeEstimateStepC> steps;
  TIM::TimeEstimateStepC lastStep{};
  std::vector<CorrectionReportC> corrections;
  boost::signals2::scoped_connection estimateConnection;
  boost::signals2::scoped_connection correctionConnection;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_PRESENTEVENTS_H
