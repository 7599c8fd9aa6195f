#pragma once

#include <cstdint>

#include "transport/abstract_comms.h"
#include "transport/silence.h"

namespace Morquil {

/// The rules of one connection: when the next block goes out, what a time-out means, how long to receive and when to
/// end. Knows no socket, thread, clock or block: it is notified of what happened and answers what to do.
class LinkRules {
public:
    enum class Action {
        Wait,        ///< wait for the next event
        SendNext,    ///< send the next block, if one is pending
        SendPing,    ///< ask the silent device for a sign of life
        Receive,     ///< receive once more
        ReportLoss,  ///< report a network error, and end
        End,         ///< end the connection
    };

    /// To be asked before each wait.
    /// Returns: for how many milliseconds to wait for an event.
    std::uint32_t NextWaitMs(Silence::Time now) { return silence_.RemainingMs(now); }

    /// A wait has returned `event`. `wasInterrupted`: it failed because the system interrupted it.
    Action OnEvent(CommsEvent event, bool wasInterrupted);

    /// A receive into a buffer of `size` bytes gave `result`: a number of bytes, 0 or a `CommsResult`.
    Action OnReceived(int result, int size);

    /// The device has answered the block in flight, if there is one.
    Action OnAcknowledged();

    /// A block has been sent: it is in flight until the device answers.
    void OnBlockSent() { isBlockInFlight_ = true; }

    /// Bytes of anything have been sent.
    void OnBytesSent() { silence_.Break(); }

private:
    Action OnSilence() const { return isBlockInFlight_ ? Action::End : Action::SendPing; }

    /// After so many full receives a flood is left for a look at the wake-ups.
    static constexpr int receivesPerEvent = 16;

    Silence silence_;
    bool isBlockInFlight_ = false;
    int receives_ = 0;  // since the last event
};

}  // namespace Morquil
