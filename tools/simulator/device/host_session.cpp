#include "simulator/device/host_session.h"

#include <utility>

#include "simulator/blocks/device_text.h"
#include "simulator/link/acknowledgements.h"

namespace Morquil::Simulator {

void HostSession::OnOtherBlock(std::size_t place, const void* changeSet) {
    const BlockRole role = factsByPlace[place].role;
    const bool unreadable = std::exchange(unreadableLine_, false);
    if (unreadable || role == BlockRole::Announcement) {
        Refuse(place);
    } else if (role == BlockRole::Offers) {
        ReplyWithOffer({place, changeSet});
    } else {
        Change({place, changeSet});
    }
}

void HostSession::Refuse(std::size_t place) {
    answer_.toSender += refused;
    answer_.toSender += DeviceText(state_.Blocks().At(place));
}

void HostSession::ReplyWithOffer(AnyBlock request) {
    // A host requests an offer with the header alone. Hosts cannot change what the device offers.
    if (IsEmpty(request)) {
        answer_.toSender += acknowledged;
        answer_.toSender += DeviceText(state_.Blocks().At(request.place));
    } else {
        Refuse(request.place);
    }
}

void HostSession::Change(AnyBlock block) {
    const ChangeOutcome outcome = state_.Change(block, ChangeSource::Host);
    if (!outcome.error.empty()) {
        Refuse(block.place);
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
