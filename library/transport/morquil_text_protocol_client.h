#pragma once

#include <cstddef>
#include <memory>
#include <string>

#include "MorquilAPI.h"
#include "protocol/morquil_text_protocol_parser.h"
#include "protocol/sink.h"
#include "transport/message_queue.h"
#include "transport/pending_messages.h"
#include "transport/reported_keys.h"
#include "transport/sent_texts.h"
#include "transport/text_protocol_client.h"

namespace Morquil {

/// The client for this protocol's blocks: parses received bytes, holds pending messages and remembers sent blocks, so
/// that a device's answer can be distinguished from a change made elsewhere. A derived class receives the blocks.
class MorquilTextProtocolClient : public TextProtocolClient, public IMorquilTextProtocolSink, public IMessageQueue {
public:
    explicit MorquilTextProtocolClient(std::unique_ptr<AbstractComms> comms);

    void OnPing() override {}
    void OnAcknowledge(bool positive) override;
    void OnUnknownBlock() override {}
    void OnProtocolError(const char* text) override;

protected:
    std::unique_ptr<TextProtocolMessageBase> TakeNextMessage() override;
    void OnWoken() override { receipts_.NotifyDue(); }
    void OnSilence() override;
    void OnDataReceived(const char* bytes, std::size_t length) override;

    /// Whether any sent text still awaits its echo. On the connection thread, like the next two.
    bool AwaitsEcho() const { return !sentTexts_.IsEmpty(); }
    /// Whether the library itself has sent exactly this block.
    bool IsSentText(const std::string& text) const { return sentTexts_.Contains(text); }
    /// Forgets a sent block and all blocks that were sent before it.
    void DropSentThrough(const std::string& text) { sentTexts_.DropThrough(text); }

    /// The receipts of this connection's messages.
    Receipts& MessageReceipts() { return receipts_; }

    /// Drops everything that arrives from now on.
    /// Threads: any, also inside a sink operation.
    void StopListening() { parser_.SetSink(nullptr); }
    bool IsListening() const { return parser_.HasSink(); }

private:
    HRESULT QueueInSlot(PendingSlot slot, std::unique_ptr<TextProtocolMessageBase> message) final;

    SentTexts sentTexts_;
    MorquilTextProtocolParser parser_;
    Receipts receipts_{&IsReportedBack};
    PendingMessages pending_{receipts_};
    bool lastAnswer_ = true;
};

}  // namespace Morquil
