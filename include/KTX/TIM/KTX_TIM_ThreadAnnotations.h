#ifndef KTX_TIM_THREADANNOTATIONS_H
#define KTX_TIM_THREADANNOTATIONS_H

/// \file
/// Names of clang's thread safety attributes; empty for every other compiler.

#if defined(__clang__) && !defined(_MSC_VER)
#define KTX_TIM_ANNOTATION(x) __attribute__((x))
#else
#define KTX_TIM_ANNOTATION(x)
#endif

#define KTX_TIM_CAPABILITY(name) KTX_TIM_ANNOTATION(capability(name))
#define KTX_TIM_SCOPED_CAPABILITY KTX_TIM_ANNOTATION(scoped_lockable)
#define KTX_TIM_GUARDED_BY(lock) KTX_TIM_ANNOTATION(guarded_by(lock))
#define KTX_TIM_REQUIRES(...) KTX_TIM_ANNOTATION(requires_capability(__VA_ARGS__))
#define KTX_TIM_ACQUIRE(...) KTX_TIM_ANNOTATION(acquire_capability(__VA_ARGS__))
#define KTX_TIM_RELEASE(...) KTX_TIM_ANNOTATION(release_capability(__VA_ARGS__))
#define KTX_TIM_EXCLUDES(...) KTX_TIM_ANNOTATION(locks_excluded(__VA_ARGS__))
#define KTX_TIM_NO_THREAD_SAFETY_ANALYSIS KTX_TIM_ANNOTATION(no_thread_safety_analysis)

#endif  // KTX_TIM_THREADANNOTATIONS_H
