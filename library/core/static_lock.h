#pragma once

#include "core/native_types.h"
#include "core/thread_safety.h"

namespace QRN::Core {

/// A lock that is usable before any constructor has run and is never destroyed, for the few lists that the whole
/// process shares. Not recursive. Hold it for a few instructions only.
class CAPABILITY("lock") StaticLock {
public:
    constexpr StaticLock() = default;
    StaticLock(const StaticLock&) = delete;
    StaticLock& operator=(const StaticLock&) = delete;

    void Enter() ACQUIRE();
    void Leave() RELEASE();

private:
    NativeStaticLock native_ = QRN_STATIC_LOCK_INIT;
};

/// Holds a `StaticLock` to the end of its scope.
class SCOPED_CAPABILITY StaticLockHold {
public:
    explicit StaticLockHold(StaticLock& lock) ACQUIRE(lock) : lock_(lock) { lock_.Enter(); }
    ~StaticLockHold() RELEASE() { lock_.Leave(); }
    StaticLockHold(const StaticLockHold&) = delete;
    StaticLockHold& operator=(const StaticLockHold&) = delete;

private:
    StaticLock& lock_;
};

}  // namespace QRN::Core
