#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

#include "transport/abstract_comms.h"

namespace Morquil {

/// The signals of a transport that were given and not taken yet, each once. Tells when a signal needs a system call to
/// be heard, which is only while somebody waits.
/// Threads: `Give` from any; everything else from the one that waits.
class Signals {
public:
    /// Returns: whether the wait has to be woken.
    bool Give(CommsSignal which);

    /// Whether the signal `which` was given and not taken yet.
    bool Has(CommsSignal which) const;

    /// Takes the first signal there is, of stop, send and user; the others stay.
    std::optional<CommsEvent> TakeFirst();
    /// Takes the signal `which` alone.
    /// Returns: whether it was there.
    bool Take(CommsSignal which);

    /// Says, as long as it stands on the stack, that a wait is on its way. Take what is there once it stands: what
    /// comes later wakes. The wait may be woken for a signal that has been taken.
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
