#pragma once

#include <cstddef>
#include <string_view>

namespace Morquil {

/// Whether standard output leads anywhere at present.
bool IsStandardOutputOpen();

/// Writes `text`, of up to 4,096 bytes, to standard output after what the host's stream holds back, without waiting for
/// a reader and without a signal to the host.
/// Threads: one at a time.
/// Returns: how many bytes were written; for a pipe, all or none.
std::size_t WriteAtOnce(std::string_view text);

}  // namespace Morquil
