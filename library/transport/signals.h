#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

#include "transport/abstract_comms.h"

namespace Morquil {

/// The pending signals of a transport: given and not yet taken, each at most once. Also decides when a signal needs a
/// system call, which is only during a wait.
/// Threads: `Raise` from any thread; everything else from the waiting thread.
class Signals {
public:
    /// Returns: whether a wait has to be woken.
    bool Raise(CommsSignal which);

    /// Whether the signal `which` is pending.
    bool Has(CommsSignal which) const;

    /// Takes the first pending signal in the order stop, send, user. The others stay pending.
    std::optional<CommsEvent> TakeFirst();
    /// Takes only the signal `which`.
    /// Returns: whether it was pending.
    bool Take(CommsSignal which);

    /// Marks a wait as in progress while the scope lasts. Take the pending signals after constructing it: a signal that
    /// comes later wakes the wait. The wait may also be woken for a signal that has already been taken.
    class Wait {
    public:
        explicit Wait(Signals& signals) : waiting_(signals.waiting_) { waiting_ = true; }
        ~Wait() { waiting_ = false; }
        Wait(const Wait&) = delete;
        Wait& operator=(const Wait&) = delete;

    private:
        std::atomic<bool>& waiting_;
    };

private:
    std::atomic<std::uint32_t> given_ = 0;  // a bit for each `CommsSignal`
    std::atomic<bool> waiting_ = false;
};

}  // namespace Morquil
