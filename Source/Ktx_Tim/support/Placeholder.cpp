#include "KTX/TIM/KTX_TIM_Api.h"

namespace KTX::TIM {

KTX_TIM_API void placeholder();

void placeholder() {}

}  // namespace KTX::TIM
