// What a sink has been told, as a fingerprint.
#pragma once

#include <cstdint>
#include <string_view>

#include "fuzz/digest.h"
#include "protocol/blocks/all.h"

namespace Morquil::Fuzz {

/// Digests events, and notes the digest at one moment on the way.
class EventDigest {
public:
    explicit EventDigest(std::uint64_t noteAfter) : noteAfter_(noteAfter) {}

    std::uint64_t Events() const { return events_; }
    std::uint64_t Acknowledgements() const { return acknowledgements_; }
    std::uint64_t Value() const { return digest_.Value(); }
    std::uint64_t Noted() const { return noted_; }
    /// Whether it is the moment to note.
    bool IsDue() const { return events_ == noteAfter_; }

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
        noted_ = IsDue() ? digest_.Value() : noted_;
    }

    std::uint64_t noteAfter_;
    std::uint64_t events_ = 0;
    std::uint64_t acknowledgements_ = 0;
    std::uint64_t noted_ = 0;
    Digest digest_;
};

}  // namespace Morquil::Fuzz
