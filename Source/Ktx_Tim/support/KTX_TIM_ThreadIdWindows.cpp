#include "support/KTX_TIM_ThreadId.h"

#include <boost/winapi/get_current_thread_id.hpp>

namespace KTX::TIM {

std::uint32_t currentThreadId32() {
  return currentSystemThreadId();
}

std::uint32_t currentSystemThreadId() {
  return boost::winapi::GetCurrentThreadId();
}

}  // namespace KTX::TIM
