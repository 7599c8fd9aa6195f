#pragma once

#include <cstdint>

#include "transport/abstract_comms.h"
#include "transport/silence.h"

namespace Morquil {

/// The rules of one connection: when to send the next block, what a time-out means, how long to receive and when to
/// end. Uses no socket, thread, clock or block: it is notified of events and returns the action to take.
class LinkRules {
public:
    enum class Action {
        Wait,        ///< wait for the next event
        SendNext,    ///< send the next block, if one is pending
        SendPing,    ///< check whether the silent device still answers
        Receive,     ///< receive once more
        ReportLoss,  ///< report a network error, and end
        End,         ///< end the connection
    };

    /// Call it before each wait.
    /// Returns: the number of milliseconds to wait for an event.
    std::uint32_t NextWaitMs(Silence::Time now) { return silence_.RemainingMs(now); }

    /// A wait has returned `event`. `wasInterrupted`: it failed because the system interrupted it.
    Action OnEvent(CommsEvent event, bool wasInterrupted);

    /// A receive into a buffer of `size` bytes has returned `result`: a number of bytes, 0 or a `CommsResult`.
    Action OnReceived(int result, int size);

    /// The device has answered the block in flight, if there is one.
    Action OnAcknowledged();

    /// A block has been sent. It is in flight until the device answers.
    void OnBlockSent() {
        isBlockInFlight_ = true;
        ++sentCount_;
    }

    /// A ping has been sent. It is not in flight, but the device answers it as well.
    void OnPingSent() { ++sentCount_; }

    /// How many blocks and pings have been sent and answered. Answers come in the order of sending. What is unanswered
    /// when a silent device is asked again will not be answered any more, and counts as answered.
    std::uint64_t SentCount() const { return sentCount_; }
    std::uint64_t AnsweredCount() const { return answeredCount_; }

    /// Any bytes have been sent.
    void OnBytesSent() { silence_.Break(); }

private:
    Action OnSilence();

    /// After this many full receives in a row, a flood of bytes is interrupted to check the wake-ups.
    static constexpr int receivesPerEvent = 16;

    Silence silence_;
    bool isBlockInFlight_ = false;
    std::uint64_t sentCount_ = 0;
    std::uint64_t answeredCount_ = 0;
    int receives_ = 0;  // since the last event
};

}  // namespace Morquil
