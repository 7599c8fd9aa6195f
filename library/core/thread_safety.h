#pragma once

// Names for clang's thread-safety attributes; they expand to nothing for other compilers. A member names the lock that
// guards it, a function names the lock that it needs, and the clang build reports every violation as an error.

#if defined(__clang__)
#define QRN_THREAD_ATTRIBUTE(x) __attribute__((x))
#else
#define QRN_THREAD_ATTRIBUTE(x)
#endif

// clang-format off
#define CAPABILITY(name)           QRN_THREAD_ATTRIBUTE(capability(name))
#define SCOPED_CAPABILITY          QRN_THREAD_ATTRIBUTE(scoped_lockable)
#define GUARDED_BY(lock)           QRN_THREAD_ATTRIBUTE(guarded_by(lock))
#define REQUIRES(...)              QRN_THREAD_ATTRIBUTE(requires_capability(__VA_ARGS__))
#define ACQUIRE(...)               QRN_THREAD_ATTRIBUTE(acquire_capability(__VA_ARGS__))
#define RELEASE(...)               QRN_THREAD_ATTRIBUTE(release_capability(__VA_ARGS__))
#define NO_THREAD_SAFETY_ANALYSIS  QRN_THREAD_ATTRIBUTE(no_thread_safety_analysis)
// clang-format on
