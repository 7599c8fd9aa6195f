#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Morquil::Simulator {

/// Any bytes as a string of the C language, in quotes and on one line.
std::string Escaped(std::string_view bytes);

/// The bytes of what `Escaped` writes.
/// Returns: nothing when it is no such string.
std::optional<std::string> Unescaped(std::string_view quoted);

}  // namespace Morquil::Simulator
