#include "session/KTX_RCV_PresentEvents.h"

#include <utility>

#include "KTX/TIM/KTX_TIM_TimeCorrection.h"

namespace KTX::RCV {

PresentEventsC::PresentEventsC(SessionListenerI& sessionListener,
                               EstimateSinkI* estimateSink,
                               SessionCountsC& sessionCounts)
    : listener(sessionListener), estimates(estimateSink), counts(sessionCounts) {
  estimateConnection = TIM::connectTimeEstimated([this](TIM::TimeEstimateStepC const& step) {
    lastStep = step;
    steps.push_back(step);
  });
  correctionConnection = TIM::connectTimeCorrected(
      [this](int week, int millisecondsOfWeek, TIM::TimeChangeT const& change) {
        CorrectionReportC correction;
        correction.week = static_cast<std::uint16_t>(week);
        correction.msOfWeek = static_cast<std::uint32_t>(millisecondsOfWeek);
        correction.changeMs = change.count();
        corrections.push_back(correction);
        if (clockSetter != nullptr) {
          clockSetter->onCorrection();
        }
      });
}

void PresentEventsC::handOverSteps() {
  if (estimates != nullptr) {
    for (TIM::TimeEstimateStepC const& step : steps) {
      estimates->onEstimate(step);
    }
  }
  steps.clear();
}

void PresentEventsC::reportCorrections() {
  std::vector<CorrectionReportC> const released = std::exchange(corrections, {});
  for (CorrectionReportC const& correction : released) {
    ++counts.corrections;
    listener.onCorrection(correction);
  }
}

}  // namespace KTX::RCV
