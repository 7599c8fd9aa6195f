#pragma once

#include <string_view>

namespace Morquil {

/// Prints text on standard output, after what the host has printed there. Never waits for a reader: text that cannot be
/// written at once is dropped, and when writing works again a line reports how many bytes were dropped. Prints nothing
/// if standard output was closed when the library was loaded: the text would go into the next file that the host opens.
/// Threads: any.
void Print(std::string_view text);

}  // namespace Morquil
