#include "transport/link_rules.h"

#include <algorithm>

namespace Morquil {

LinkRules::Action LinkRules::OnEvent(CommsEvent event, bool wasInterrupted) {
    receives_ = 0;
    switch (event) {
        case CommsEvent::SendRequested:
            return isBlockInFlight_ ? Action::Wait : Action::SendNext;
        case CommsEvent::StopRequested:
            return Action::End;
        case CommsEvent::Readable:
            return Action::Receive;
        case CommsEvent::SocketError:
            return Action::ReportLoss;
        case CommsEvent::Timeout:
            return OnSilence();
        case CommsEvent::WaitFailed:
            return wasInterrupted ? Action::Wait : Action::End;
        case CommsEvent::UserSignal:
        case CommsEvent::Writable:
            return Action::Wait;
    }
    return Action::Wait;
}

LinkRules::Action LinkRules::OnReceived(int result, int size) {
    const bool isFirst = receives_++ == 0;
    if (result == commsWouldBlock) {
        return Action::Wait;
    }
    if (result <= 0) {
        // If bytes came first, the next wait reports the end, as for any connection.
        return isFirst ? Action::End : Action::Wait;
    }
    silence_.Break();
    return result == size && receives_ < receivesPerEvent ? Action::Receive : Action::Wait;
}

LinkRules::Action LinkRules::OnSilence() {
    if (isBlockInFlight_) {
        return Action::End;
    }
    answeredCount_ = sentCount_;
    return Action::SendPing;
}

LinkRules::Action LinkRules::OnAcknowledged() {
    isBlockInFlight_ = false;
    answeredCount_ = std::min(answeredCount_ + 1, sentCount_);
    return Action::SendNext;
}

}  // namespace Morquil
