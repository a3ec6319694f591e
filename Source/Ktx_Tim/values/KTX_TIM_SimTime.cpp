#include "KTX/TIM/KTX_TIM_SimTime.h"

namespace KTX::TIM {

SimTimeC::SimTimeC() = default;

SimTimeC::~SimTimeC() = default;

}  // namespace KTX::TIM
