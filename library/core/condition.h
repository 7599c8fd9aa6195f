#pragma once

#include "core/lockable.h"
#include "core/thread_safety.h"

namespace QRN::Core {

/// Lets threads wait for a change of what a `Lockable` guards.
class Condition {
public:
    Condition();
    ~Condition();
    Condition(const Condition&) = delete;
    Condition& operator=(const Condition&) = delete;

    /// Gives `lockable` up, waits to be woken and takes it again. May return early: test the condition in a loop.
    /// Threads: the caller holds `lockable` exactly once; a second `Enter` would keep it from everyone while waiting.
    void Wait(Lockable& lockable) REQUIRES(lockable);

    /// Wakes every thread that waits.
    /// Threads: any, with or without the lock.
    void WakeAll();

private:
    NativeCondition native_;
};

}  // namespace QRN::Core
