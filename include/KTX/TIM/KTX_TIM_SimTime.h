#ifndef KTX_TIM_SIMTIME_H
#define KTX_TIM_SIMTIME_H

#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

/// Names a simulated time as a kind of time: a type tag without data.
class KTX_TIM_API SimTimeC {
 public:
  SimTimeC();
  virtual ~SimTimeC();
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_SIMTIME_H
