#pragma once

#include <array>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "tests/simulation/wire.h"

namespace Morquil::Simulation {

/// The text of a block.
std::string TextOf(std::string_view header, const Lines& lines);

/// What waits to be sent, what is in flight and which texts wait for their echo.
class ExpectedQueue {
public:
    void Add(std::string_view header, const Lines& lines, bool isRemembered);
    /// The text that has to be sent next; nothing when nothing waits.
    std::optional<std::string> Next() const;
    /// The next has been sent.
    void TakeNext();

    bool InFlight() const { return inFlight_; }
    /// So many acknowledgements have come at once: each of them lets a block go.
    void Acknowledge(std::size_t count) {
        inFlight_ = false;
        acknowledgements_ = count - 1;
    }
    /// What has come has been taken: acknowledgements that met no block are forgotten.
    void ForgetAcknowledgements() { acknowledgements_ = 0; }

    /// Whether the library itself has sent this; forgets it and all that was sent before it.
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
    std::size_t acknowledgements_ = 0;  ///< more of those that have come together
    std::deque<std::string> sentTexts_;
};

}  // namespace Morquil::Simulation
