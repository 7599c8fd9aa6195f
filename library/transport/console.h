#pragma once

#include <string_view>

namespace Morquil {

/// Prints text on standard output, after what the host has printed there, and never waits for whoever reads it: text
/// that cannot be written at once is dropped, and a line says how many bytes were dropped when writing works again.
/// Prints nothing where standard output was closed when the library was loaded: the host's next file would get it.
/// Threads: any.
void Print(std::string_view text);

}  // namespace Morquil
