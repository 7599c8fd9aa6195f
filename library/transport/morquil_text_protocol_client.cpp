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

/// A refusal releases the next block exactly as an acknowledgement does: the mirror shows the device's actual values.
void MorquilTextProtocolClient::OnAcknowledge(bool /*positive*/) {
    Acknowledge();
}

/// A host is not notified of a device's malformed lines. They appear on the console as received.
void MorquilTextProtocolClient::OnProtocolError(const char* /*text*/) {}

}  // namespace Morquil
