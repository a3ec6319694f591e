#ifndef KTX_TIM_THREADKEY_H
#define KTX_TIM_THREADKEY_H

#include <cstdint>

#if defined(_WIN32)
#include <boost/winapi/get_current_thread_id.hpp>
#else
#include <pthread.h>
#endif

#if defined(__has_builtin)
#if __has_builtin(__builtin_thread_pointer)
#define KTX_TIM_HAS_THREAD_POINTER
#endif
#endif

namespace KTX::TIM {

/// Tells the calling thread from every other living one, at the cost of a register; never 0.
inline std::uintptr_t currentThreadKey() {
#if defined(_WIN32)
  return boost::winapi::GetCurrentThreadId();
#elif defined(KTX_TIM_HAS_THREAD_POINTER)
  return reinterpret_cast<std::uintptr_t>(__builtin_thread_pointer());
#else
  return static_cast<std::uintptr_t>(pthread_self());
#endif
}

}  // namespace KTX::TIM

#endif  // KTX_TIM_THREADKEY_H
