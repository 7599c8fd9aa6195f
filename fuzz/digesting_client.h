// The library's own client without a network: the caller passes it what it receives, and can read what it sends.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz/event_digest.h"
#include "protocol/every_block_sink.h"
#include "transport/abstract_comms.h"
#include "transport/morquil_text_protocol_client.h"

namespace Morquil::Fuzz {

/// Collects everything that is sent; receives nothing.
class SentText final : public AbstractComms {
public:
    explicit SentText(std::string& sent) : sent_(sent) {}

    bool Initialise() override { return true; }
    bool Open(const std::string&, std::uint32_t, bool) override { return false; }
    bool WaitForConnect(std::int32_t) override { return false; }
    bool Attach(SocketHandle, bool) override { return false; }
    void Close() override {}
    std::uint32_t SetWaitMode(bool, std::uint32_t timeoutMs) override { return timeoutMs; }
    CommsEvent WaitForEvent() override { return CommsEvent::WaitFailed; }
    int Receive(char*, int, int) override { return commsFailed; }
    int Send(const char* data, int length, int) override {
        sent_.append(data, static_cast<std::size_t>(length));
        return length;
    }
    bool Signal(int) override { return true; }

private:
    std::string& sent_;
};

struct Sent {
    std::string sent;
};

/// Does with blocks what a derived class may do: digests them, and may stop listening in the middle.
class DigestingClient final : private Sent, public EveryBlockSink<DigestingClient, MorquilTextProtocolClient> {
public:
    DigestingClient() : EveryBlockSink(std::make_unique<SentText>(sent)) {}
    ~DigestingClient() override { Stop(); }

    /// Starts a new digest, which is recorded after `recordAfter` events; the client stops listening then if
    /// `stopsThen`.
    void Begin(std::uint64_t recordAfter, bool stopsThen) {
        digest_ = EventDigest(recordAfter);
        stopsThen_ = stopsThen;
        StopIfDue();
    }
    void Arrive(std::string_view bytes) { OnDataReceived(bytes.data(), bytes.size()); }

    const EventDigest& Digest() const { return digest_; }
    const std::string& Sent() const { return sent; }
    /// Whether the answer `text` would be treated as an echo.
    bool ExpectsEcho(const std::string& text) const { return IsSentText(text); }

    void OnPing() override {
        digest_.Ping();
        StopIfDue();
    }
    void OnAcknowledge(bool positive) override {
        digest_.Acknowledge(positive);
        MorquilTextProtocolClient::OnAcknowledge(positive);
        StopIfDue();
    }
    void OnUnknownBlock() override {
        digest_.UnknownBlock();
        StopIfDue();
    }
    void OnProtocolError(const char* text) override {
        digest_.ProtocolError(text);
        StopIfDue();
    }

    template <class Description>
    void OnBlock(const ChangeSetOf<Description>& set) {
        digest_.Block<Description>(set);
        StopIfDue();
    }

private:
    void OnConnectionChanged(bool) override {}

    void StopIfDue() {
        if (stopsThen_ && digest_.IsDue()) {
            StopListening();
        }
    }

    EventDigest digest_{0};
    bool stopsThen_ = false;
};

}  // namespace Morquil::Fuzz
