#pragma once

#include "core/critical_section.h"
#include "core/thread_safety.h"

namespace QRN::Core {

/// A recursive mutual-exclusion lock: the thread that holds it may enter it again and must leave it as many times. Hold
/// it through `Lock`; `Enter` and `Leave` are for the rare place where no scope fits.
class CAPABILITY("lock") Lockable {
public:
    Lockable() { section_.Initialise(); }
    virtual ~Lockable() { section_.Delete(); }
    Lockable(const Lockable&) = delete;
    Lockable& operator=(const Lockable&) = delete;

    void Enter() ACQUIRE() NO_THREAD_SAFETY_ANALYSIS { section_.Enter(); }
    void Leave() RELEASE() NO_THREAD_SAFETY_ANALYSIS { section_.Leave(); }

private:
    friend class Condition;  // releases the section while it waits

    CriticalSection section_;
};

}  // namespace QRN::Core
