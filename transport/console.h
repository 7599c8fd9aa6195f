#pragma once

#include <string_view>

namespace Morquil {

/// Prints text on standard output, as the C library would, but with no more than one write of the system's.
void Print(std::string_view text);

}  // namespace Morquil
