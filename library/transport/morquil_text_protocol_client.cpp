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
    const bool isFollowed = receipts_.IsActive();
    if (message != nullptr && (message->recordSentText || isFollowed)) {
        std::string text = TextOf(*message);
        if (isFollowed) {
            receipts_.OnSending(Rules().SentCount() + 1, text);
        }
        if (message->recordSentText) {
            sentTexts_.Append(std::move(text));
        }
    }
    return message;
}

void MorquilTextProtocolClient::OnDataReceived(const char* bytes, std::size_t length) {
    parser_.Feed(bytes, length);
}

/// A refusal releases the next block exactly as an acknowledgement does: the mirror shows the device's actual values.
void MorquilTextProtocolClient::OnAcknowledge(bool positive) {
    lastAnswer_ = positive;
    Acknowledge();
    receipts_.OnAnswered(Rules().AnsweredCount(), positive);
    receipts_.NotifyDue();
}

/// What has not been answered by now will not be: the device does not answer pings, and its answers to later blocks
/// were counted one too early.
void MorquilTextProtocolClient::OnSilence() {
    receipts_.OnAnswered(Rules().AnsweredCount(), lastAnswer_);
    receipts_.NotifyDue();
}

/// A host is not notified of a device's malformed lines. They appear on the console as received.
void MorquilTextProtocolClient::OnProtocolError(const char* /*text*/) {}

}  // namespace Morquil
