#pragma once

#include <cstdint>

#include "core/lockable.h"

namespace QRN::Core {

/// A manual-reset event: not signalled when created, and signalled permanently once `Set`. Waiting does not consume the
/// signal. All operations return 0 or the system's error code. Before `Create` they fail with 6, "invalid handle".
class Event : public Lockable {
public:
    Event() = default;
    ~Event() override;

    /// Creates the event, not signalled. A second call replaces the first event, which must not be in use at that time.
    std::uint32_t Create();

    /// Signals the event. `wasSet`, if not null, receives whether it was already signalled.
    /// Threads: any. Of several callers that pass `wasSet`, exactly one gets false.
    std::uint32_t Set(bool* wasSet = nullptr);

    /// Waits for the signal for `microseconds`, truncated to whole milliseconds (999 only tests it); negative: without
    /// limit. `timedOut` is true when the wait timed out. The event's own lock is neither needed nor released.
    std::uint32_t Wait(std::int32_t microseconds, bool& timedOut);

private:
    void* handle_ = nullptr;
};

}  // namespace QRN::Core
