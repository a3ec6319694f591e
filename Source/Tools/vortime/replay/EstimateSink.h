#ifndef KTX_VORTIME_ESTIMATESINK_H
#define KTX_VORTIME_ESTIMATESINK_H

#include "KTX/TIM/KTX_TIM_TimeEstimate.h"

namespace KTX::VORTIME {

/// Takes the steps of the library's estimate, in order.
class EstimateSinkI {
 public:
  virtual ~EstimateSinkI() = default;
  virtual void onEstimate(TIM::TimeEstimateStepC const& step) = 0;
};

}  // namespace KTX::VORTIME

#endif  // KTX_VORTIME_ESTIMATESINK_H
