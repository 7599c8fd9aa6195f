#pragma once

#include <cstddef>
#include <string_view>

namespace Morquil {

/// Whether standard output is currently open.
bool IsStandardOutputOpen();

/// Writes `text`, of up to 4,096 bytes, to standard output, after the text that the host's stream has buffered. Does
/// not wait for a reader and raises no signal in the host.
/// Threads: one at a time.
/// Returns: the number of bytes written; for a pipe, all or none.
std::size_t WriteAtOnce(std::string_view text);

}  // namespace Morquil
