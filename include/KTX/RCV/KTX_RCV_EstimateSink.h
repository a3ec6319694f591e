#ifndef KTX_RCV_ESTIMATESINK_H
#define KTX_RCV_ESTIMATESINK_H

#include "KTX/TIM/KTX_TIM_TimeEstimate.h"

namespace KTX::RCV {

/// Takes the steps of the library's estimate, in order.
class EstimateSinkI {
 public:
  virtual ~EstimateSinkI() = default;
  /// One step of the library's filter.
  virtual void onEstimate(TIM::TimeEstimateStepC const& step) = 0;
};

}  // namespace KTX::RCV

#endif  // KTX_RCV_ESTIMATESINK_H
