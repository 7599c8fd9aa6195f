#pragma once

// The system's own lock types, for the wrappers of this folder only.

#ifdef _WIN32
#include <windows.h>
#else
#include <pthread.h>
#endif

namespace QRN::Core {

#ifdef _WIN32
using NativeCriticalSection = CRITICAL_SECTION;
using NativeCondition = CONDITION_VARIABLE;
using NativeStaticLock = SRWLOCK;
#define QRN_STATIC_LOCK_INIT SRWLOCK_INIT
#else
using NativeCriticalSection = pthread_mutex_t;
using NativeCondition = pthread_cond_t;
using NativeStaticLock = pthread_mutex_t;
#define QRN_STATIC_LOCK_INIT PTHREAD_MUTEX_INITIALIZER
#endif

}  // namespace QRN::Core
