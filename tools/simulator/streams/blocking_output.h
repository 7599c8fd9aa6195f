#pragma once

#include <string_view>

namespace Morquil::Simulator {

/// From now on a write of the calling thread to a pipe without a reader fails, and ends nothing.
void IgnoreBrokenPipes();

/// Writes all of `text`, however long that takes.
/// Returns: whether that was possible.
bool WriteCompletely(int descriptor, std::string_view text);

}  // namespace Morquil::Simulator
