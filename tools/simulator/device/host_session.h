#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "protocol/any_block.h"
#include "protocol/sink.h"
#include "simulator/blocks/host_text_parser.h"
#include "simulator/device/device_state.h"

namespace Morquil::Simulator {

/// The device's side of the conversation with one host. Has no socket.
///
/// Each block is answered on its own. "ACK" is followed by the results of the block. "NACK" means that the device does
/// not know the block, cannot parse one of its lines or does not offer one of its values. A refused block changes
/// nothing, and its current values are sent back to its sender.
class HostSession final : public IMorquilTextProtocolSink {
public:
    /// `state` is not owned and is shared by all hosts.
    explicit HostSession(DeviceState& state);
    HostSession(const HostSession&) = delete;
    HostSession& operator=(const HostSession&) = delete;
    ~HostSession() override;

    struct Answer {
        std::string toSender;
        std::string toOthers;
    };

    /// Processes the next bytes of the host. Returns the resulting text.
    Answer Receive(std::string_view bytes);

    void OnPing() override;
    void OnAcknowledge(bool /*positive*/) override {}  // a host has nothing to acknowledge
    void OnUnknownBlock() override;
    void OnProtocolError(const char* text) override;

private:
    void OnOtherBlock(std::size_t place, const void* changeSet) override;
    void Refuse(std::size_t place);
    void ReplyWithOffer(AnyBlock request);
    void Change(AnyBlock block);

    DeviceState& state_;
    HostTextParser parser_{*this};
    bool unreadableLine_ = false;  // in the block being received
    Answer answer_;
};

}  // namespace Morquil::Simulator
