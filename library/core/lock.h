#pragma once

#include <cstdint>

#include "core/lockable.h"
#include "core/thread_safety.h"

namespace QRN::Core {

/// Holds a `Lockable` from construction to the end of the scope.
class SCOPED_CAPABILITY Lock {
public:
    /// Enters `lockable` and sets `error` to 0: the lock is held. Entering a critical section never fails on any
    /// system, so 0 is the only outcome. A caller whose contract names a result for a failure still checks for one.
    Lock(Lockable& lockable, std::uint32_t& error) ACQUIRE(lockable) NO_THREAD_SAFETY_ANALYSIS : lockable_(&lockable),
                                                                                                 error_(&error) {
        Hold();
    }
    /// For callers that cannot report an error code.
    explicit Lock(Lockable& lockable) ACQUIRE(lockable) NO_THREAD_SAFETY_ANALYSIS : lockable_(&lockable) { Hold(); }
    virtual ~Lock() RELEASE() NO_THREAD_SAFETY_ANALYSIS {
        if (owns_) {
            lockable_->Leave();
        }
    }
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

private:
    void Hold() NO_THREAD_SAFETY_ANALYSIS {
        lockable_->Enter();
        if (error_ != nullptr) {
            *error_ = 0;
        }
        owns_ = true;
    }

    Lockable* lockable_;
    std::uint32_t* error_ = nullptr;
    bool owns_ = false;
};

}  // namespace QRN::Core
