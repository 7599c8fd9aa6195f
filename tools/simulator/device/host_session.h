#pragma once

#include <string>
#include <string_view>

#include "protocol/every_block_sink.h"
#include "simulator/blocks/host_text_parser.h"
#include "simulator/device/device_state.h"

namespace Morquil::Simulator {

/// The device's end of the conversation with one host. Knows no socket.
///
/// Every block gets an answer of its own: "ACK" and what came of it; or "NACK" when the device does not know the block,
/// cannot read one of its lines or does not offer one of its values. A refused block changes nothing, and its present
/// values are told to its sender.
class HostSession final : public EveryBlockSink<HostSession> {
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

    /// Takes the next bytes of the host. Returns what they lead to.
    Answer Receive(std::string_view bytes);

    template <class Description>
    void OnBlock(const ChangeSetOf<Description>& set);

    void OnPing() override;
    void OnAcknowledge(bool /*positive*/) override {}  // a host confirms nothing
    void OnUnknownBlock() override;
    void OnProtocolError(const char* text) override;

private:
    template <class Description>
    void Refuse();
    template <class Description>
    void TellOffer(const ChangeSetOf<Description>& request);
    template <class Description>
    void Change(const ChangeSetOf<Description>& set);

    DeviceState& state_;
    HostTextParser parser_{*this};
    bool unreadableLine_ = false;  // in the block that is being received
    Answer answer_;
};

}  // namespace Morquil::Simulator
