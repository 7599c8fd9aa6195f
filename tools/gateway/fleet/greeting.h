// What the first bytes from port 9800 say about the other side.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "gateway/fleet/link.h"

namespace Morquil::Gateway {

/// A state and a sentence about it. `Connected` stands for a converter that can be controlled.
struct Diagnosis {
    LinkState state = LinkState::Connecting;
    std::string sentence = {};
};

/// Judges what has arrived from `address` so far; nothing if more has to arrive first. With `isAll` nothing more does.
std::optional<Diagnosis> JudgeGreeting(std::string_view address, std::string_view bytes, bool isAll);

}  // namespace Morquil::Gateway
