#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace Morquil::Simulator {

/// Returns any bytes as a C string literal, quoted and on one line.
std::string Escaped(std::string_view bytes);

/// The reverse of `Escaped`.
/// Returns: nothing if `quoted` is not such a string.
std::optional<std::string> Unescaped(std::string_view quoted);

}  // namespace Morquil::Simulator
