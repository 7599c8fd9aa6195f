#include "simulator/device/host_session.h"

#include <utility>

#include "simulator/link/acknowledgements.h"

namespace Morquil::Simulator {

template <class Description>
void HostSession::OnBlock(const ChangeSetOf<Description>& set) {
    constexpr BlockRole role = factsOf<Description>.role;
    const bool unreadable = std::exchange(unreadableLine_, false);
    if (unreadable || role == BlockRole::Announcement) {
        Refuse<Description>();
    } else if constexpr (role == BlockRole::Offers) {
        ReplyWithOffer<Description>(set);
    } else {
        Change<Description>(set);
    }
}

template <class Description>
void HostSession::Refuse() {
    answer_.toSender += refused;
    answer_.toSender += DeviceText<Description>(state_.Of<Description>());
}

template <class Description>
void HostSession::ReplyWithOffer(const ChangeSetOf<Description>& request) {
    // A host requests an offer with the header alone. Hosts cannot change what the device offers.
    if (IsEmpty(request)) {
        answer_.toSender += acknowledged;
        answer_.toSender += DeviceText<Description>(state_.Of<Description>());
    } else {
        Refuse<Description>();
    }
}

template <class Description>
void HostSession::Change(const ChangeSetOf<Description>& set) {
    const ChangeOutcome outcome = state_.Change<Description>(set, ChangeSource::Host);
    if (!outcome.error.empty()) {
        Refuse<Description>();
        return;
    }
    answer_.toSender += acknowledged;
    answer_.toSender += outcome.report;
    answer_.toOthers += outcome.report;
}

HostSession::HostSession(DeviceState& state) : state_(state) {}

HostSession::~HostSession() = default;

HostSession::Answer HostSession::Receive(std::string_view bytes) {
    parser_.Feed(bytes);
    return std::exchange(answer_, {});
}

void HostSession::OnPing() {
    answer_.toSender += acknowledged;
}

void HostSession::OnUnknownBlock() {
    unreadableLine_ = false;
    answer_.toSender += refused;
}

void HostSession::OnProtocolError(const char* /*text*/) {
    unreadableLine_ = true;
}

}  // namespace Morquil::Simulator
