#ifndef KTX_TIM_API_H
#define KTX_TIM_API_H

/// \file
/// The macro of the library's interface.

/// \def KTX_TIM_API
/// Marks what other modules may call.

#if defined(_WIN32)
#if defined(KTX_TIM_BUILD) && defined(_MSC_VER)
#define KTX_TIM_API  // The list of exports alone names what leaves the library.
#elif defined(KTX_TIM_BUILD)
#define KTX_TIM_API __declspec(dllexport)  // The linker joins it with the symbol's ordinal.
#else
#define KTX_TIM_API __declspec(dllimport)
#endif
#else
#define KTX_TIM_API __attribute__((visibility("default")))
#endif

#endif  // KTX_TIM_API_H
