#ifndef KTX_TIM_SYSTIME_H
#define KTX_TIM_SYSTIME_H

#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

/// Names the time of the operating system as a kind of time: a type tag without data.
class KTX_TIM_API SysTimeC {
 public:
  SysTimeC();
  virtual ~SysTimeC();
};

}  // namespace KTX::TIM

#endif  // KTX_TIM_SYSTIME_H
