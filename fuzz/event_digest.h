// A fingerprint of the events that a sink has received.
#pragma once

#include <cstdint>
#include <string_view>

#include "fuzz/digest.h"
#include "protocol/blocks/all.h"

namespace Morquil::Fuzz {

/// Digests events, and records the digest after a number of them.
class EventDigest {
public:
    explicit EventDigest(std::uint64_t recordAfter) : recordAfter_(recordAfter) {}

    std::uint64_t Events() const { return events_; }
    std::uint64_t Acknowledgements() const { return acknowledgements_; }
    std::uint64_t Value() const { return digest_.Value(); }
    std::uint64_t Recorded() const { return recorded_; }
    /// Whether it is time to record.
    bool IsDue() const { return events_ == recordAfter_; }

    void Ping() { Happened(Event::Ping); }
    void Acknowledge(bool positive) {
        ++acknowledgements_;
        Happened(positive ? Event::Acknowledged : Event::Refused);
    }
    void UnknownBlock() { Happened(Event::UnknownBlock); }
    void ProtocolError(const char* text) {
        digest_.Add(std::string_view(text));
        Happened(Event::Error);
    }
    template <class Description>
    void Block(const ChangeSetOf<Description>& set) {
        digest_.Add(std::string_view(Description::block.header.name));
        AddBlock<Description>(digest_, set);
        Happened(Event::Block);
    }

private:
    enum class Event : std::uint32_t { Ping, Acknowledged, Refused, UnknownBlock, Error, Block };

    void Happened(Event event) {
        digest_.Add(static_cast<std::uint32_t>(event));
        ++events_;
        recorded_ = IsDue() ? digest_.Value() : recorded_;
    }

    std::uint64_t recordAfter_;
    std::uint64_t events_ = 0;
    std::uint64_t acknowledgements_ = 0;
    std::uint64_t recorded_ = 0;
    Digest digest_;
};

}  // namespace Morquil::Fuzz
