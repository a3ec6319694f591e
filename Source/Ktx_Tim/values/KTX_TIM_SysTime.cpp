#include "KTX/TIM/KTX_TIM_SysTime.h"

namespace KTX::TIM {

SysTimeC::SysTimeC() = default;

SysTimeC::~SysTimeC() = default;

}  // namespace KTX::TIM
