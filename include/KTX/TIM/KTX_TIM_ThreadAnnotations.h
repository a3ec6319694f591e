#ifndef KTX_TIM_THREADANNOTATIONS_H
#define KTX_TIM_THREADANNOTATIONS_H

/// \file
/// Names of clang's thread safety attributes; empty for every other compiler.

/// \def KTX_TIM_ANNOTATION
/// One of these attributes, for clang alone.

#if defined(__clang__) && !defined(_MSC_VER)
#define KTX_TIM_ANNOTATION(x) __attribute__((x))
#else
#define KTX_TIM_ANNOTATION(x)
#endif

/// On a class: its objects are locks. name is what clang calls them in its messages.
#define KTX_TIM_CAPABILITY(name) KTX_TIM_ANNOTATION(capability(name))
/// On a class: an object holds a lock from its constructor to its destructor.
#define KTX_TIM_SCOPED_CAPABILITY KTX_TIM_ANNOTATION(scoped_lockable)
/// On a data member: it is read and written only with this lock held.
#define KTX_TIM_GUARDED_BY(lock) KTX_TIM_ANNOTATION(guarded_by(lock))
/// On a function: its caller holds these locks.
#define KTX_TIM_REQUIRES(...) KTX_TIM_ANNOTATION(requires_capability(__VA_ARGS__))
/// On a function: it takes these locks, or its own object, and returns with them held.
#define KTX_TIM_ACQUIRE(...) KTX_TIM_ANNOTATION(acquire_capability(__VA_ARGS__))
/// On a function: it gives these locks, or its own object, back.
#define KTX_TIM_RELEASE(...) KTX_TIM_ANNOTATION(release_capability(__VA_ARGS__))
/// On a function: its caller must not hold these locks.
#define KTX_TIM_EXCLUDES(...) KTX_TIM_ANNOTATION(locks_excluded(__VA_ARGS__))
/// On a function: clang does not check it.
#define KTX_TIM_NO_THREAD_SAFETY_ANALYSIS KTX_TIM_ANNOTATION(no_thread_safety_analysis)

#endif  // KTX_TIM_THREADANNOTATIONS_H
