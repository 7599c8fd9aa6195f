#pragma once

#include <cstdint>

#include "core/lockable.h"

namespace QRN::Core {

/// A manual-reset event: not signalled when created, and for good once `Set`. Waiting does not consume the signal.
/// All operations return 0 or the system's error code; before `Create` they fail with 6, "invalid handle".
class Event : public Lockable {
public:
    Event() = default;
    ~Event() override;

    /// Creates the event, not signalled. A second call replaces the first event, which nobody may be using then.
    std::uint32_t Create();

    /// Signals the event. `wasSet`, when given, tells whether it was signalled before.
    /// Threads: any; of several callers with `wasSet` exactly one is told false.
    std::uint32_t Set(bool* wasSet = nullptr);

    /// Waits for the signal for `microseconds`, cut to whole milliseconds (999 only tests); negative: without limit.
    /// `timedOut` tells that the wait ran out. The event's own lock is neither needed nor given up.
    std::uint32_t Wait(std::int32_t microseconds, bool& timedOut);

private:
    void* handle_ = nullptr;
};

}  // namespace QRN::Core
