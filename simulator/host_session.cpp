#include "simulator/host_session.h"

#include <utility>

#include "simulator/acknowledgements.h"
#include "simulator/block_kinds.h"

namespace Morquil::Simulator {

template <class Description>
void HostSession::OnBlock(const ChangeSetOf<Description>& set) {
    constexpr BlockKind kind = KindOf<Description>();
    ChangeSetOf<Description> received = set;
    for (const auto& [key, value] : lines_.Unreported()) {
        unreadableLine_ |= !ReadUnreported<Description>(parser_, key, value, received);
    }
    const bool unreadable = std::exchange(unreadableLine_, false);
    if (unreadable || kind == BlockKind::Announcement) {
        Refuse<Description>();
    } else if constexpr (kind == BlockKind::Offer) {
        TellOffer<Description>(received);
    } else {
        Change<Description>(received);
    }
}

template <class Description>
void HostSession::Refuse() {
    answer_.toSender += refused;
    answer_.toSender += DeviceText<Description>(state_.Of<Description>());
}

template <class Description>
void HostSession::TellOffer(const ChangeSetOf<Description>& request) {
    // A host asks with the header alone; what the device offers is not for hosts to change.
    if (IsEmpty(request)) {
        answer_.toSender += acknowledged;
        answer_.toSender += DeviceText<Description>(state_.Of<Description>());
    } else {
        Refuse<Description>();
    }
}

template <class Description>
void HostSession::Change(const ChangeSetOf<Description>& set) {
    const ChangeOutcome outcome = state_.Change<Description>(set, Hand::Host);
    if (!outcome.complaint.empty()) {
        Refuse<Description>();
        return;
    }
    answer_.toSender += acknowledged;
    answer_.toSender += outcome.report;
    answer_.toOthers += outcome.report;
}

HostSession::HostSession(DeviceState& state) : state_(state) {
    parser_.SetSink(this);
}

HostSession::~HostSession() = default;

HostSession::Answer HostSession::Receive(std::string_view bytes) {
    lines_.Feed(bytes);
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
