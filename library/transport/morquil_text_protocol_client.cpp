#include "transport/morquil_text_protocol_client.h"

#include <utility>

namespace Morquil {

MorquilTextProtocolClient::MorquilTextProtocolClient(std::unique_ptr<AbstractComms> comms)
    : TextProtocolClient(std::move(comms)) {
    parser_.SetSink(this);
}

HRESULT MorquilTextProtocolClient::QueueInSlot(PendingSlot slot, std::unique_ptr<TextProtocolMessageBase> message) {
    const bool stored = pending_.Add(slot, std::move(message));
    return !stored || WakeSender() ? S_OK : E_FAIL;
}

std::unique_ptr<TextProtocolMessageBase> MorquilTextProtocolClient::TakeNextMessage() {
    std::unique_ptr<TextProtocolMessageBase> message = pending_.TakeNext();
    if (message != nullptr && message->recordSentText) {
        sentTexts_.Append(TextOf(*message));
    }
    return message;
}

void MorquilTextProtocolClient::OnDataReceived(const char* bytes, std::size_t length) {
    parser_.Feed(bytes, length);
}

/// A refusal releases the next block exactly as an acknowledgement does: the mirror shows what the device made of it.
void MorquilTextProtocolClient::OnAcknowledge(bool /*positive*/) {
    Acknowledge();
}

/// Bad lines of a device are no news for a host; what it said stands on the console as it came.
void MorquilTextProtocolClient::OnProtocolError(const char* /*text*/) {}

}  // namespace Morquil
