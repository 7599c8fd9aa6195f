#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace Morquil::Description {

/// A result of the interfaces, or a reason why there is no connection: its cause, and what to do about it.
struct Outcome {
    std::string_view name;
    std::uint32_t code;
    std::string_view cause;
    std::string_view cure;
};

const std::vector<Outcome>& Results();
const std::vector<Outcome>& ConnectionFailures();

}  // namespace Morquil::Description
