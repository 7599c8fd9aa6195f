#pragma once

#include <string_view>

namespace Morquil::Simulator {

/// From now on, when the calling thread writes to a pipe without a reader, the write fails but does not end the
/// program.
void IgnoreBrokenPipes();

/// Writes all of `text`, however long that takes.
/// Returns: whether it succeeded.
bool WriteCompletely(int descriptor, std::string_view text);

}  // namespace Morquil::Simulator
