#pragma once

#include <array>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "tests/worlds/simulation/wire.h"

namespace Morquil::Testing::Worlds {

/// The text of a block.
std::string TextOf(std::string_view header, const Lines& lines);

/// What is pending, what is in flight and which texts wait for their echo.
class ExpectedQueue {
public:
    void Add(std::string_view header, const Lines& lines, bool isRemembered);
    /// The text that has to be sent next; nothing if none is pending.
    std::optional<std::string> Next() const;
    /// The next has been sent.
    void TakeNext();

    bool InFlight() const { return inFlight_; }
    /// `count` acknowledgements have arrived at once: each of them releases a block.
    void Acknowledge(std::size_t count) {
        inFlight_ = false;
        acknowledgements_ = count - 1;
    }
    /// Everything received has been processed: acknowledgements without a block are forgotten.
    void DropAcknowledgements() { acknowledgements_ = 0; }

    /// Whether the library itself has sent this; forgets it and everything sent before it.
    bool TakeEcho(const std::string& text);

private:
    struct Waiting {
        std::string text;
        Lines lines;
        bool isRemembered = false;
    };
    static constexpr std::size_t slotCount = 32;

    std::optional<std::size_t> NextSlot() const;

    std::array<std::optional<Waiting>, slotCount> slots_;
    bool inFlight_ = false;
    std::size_t acknowledgements_ = 0;  ///< the remaining ones of those that arrived together
    std::deque<std::string> sentTexts_;
};

}  // namespace Morquil::Testing::Worlds
