#ifndef KTX_TIM_THREADID_H
#define KTX_TIM_THREADID_H

#include <cstdint>
#include <string>

namespace KTX::TIM {

/// An id of the calling thread that no other living thread has; never 0.
std::uint32_t currentThreadId32();

/// The system's own id of the calling thread, which no other thread of the machine has meanwhile.
std::uint32_t currentSystemThreadId();

/// The system's own id in lower-case hexadecimal, as it stands in front of each log line.
std::string currentThreadIdText();

}  // namespace KTX::TIM

#endif  // KTX_TIM_THREADID_H
