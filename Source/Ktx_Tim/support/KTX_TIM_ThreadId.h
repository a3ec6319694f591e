#ifndef KTX_TIM_THREADID_H
#define KTX_TIM_THREADID_H

#include <cstdint>
#include <string>

namespace KTX::TIM {

/// An id of the calling thread that no other living thread has; never 0.
std::uint32_t currentThreadId32();

/// The calling thread's id as the thread library writes it: lower-case hexadecimal.
std::string currentThreadIdText();

}  // namespace KTX::TIM

#endif  // KTX_TIM_THREADID_H
