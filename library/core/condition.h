#pragma once

#include "core/lockable.h"
#include "core/thread_safety.h"

namespace QRN::Core {

/// A condition variable: threads wait on it for a change to the state that a `Lockable` guards.
class Condition {
public:
    Condition();
    ~Condition();
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;

    /// Releases `lockable`, waits to be woken and reacquires it. May return early: test the condition in a loop.
    /// Threads: the caller holds `lockable` exactly once. After a second `Enter` it would stay locked during the wait.
    void Wait(Lockable& lockable) REQUIRES(lockable);

    /// Wakes every waiting thread.
    /// Threads: any, with or without the lock.
    void WakeAll();

private:
    NativeCondition native_;
};

}  // namespace QRN::Core
