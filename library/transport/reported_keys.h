#pragma once

#include <cstddef>
#include <string_view>

namespace Morquil {

/// Whether a device reports the value of this key after it has accepted it. It does not for a key that is a command,
/// nor for one that only hosts write, nor for one that the device detects and no host can set. `slot` is the index of
/// the block's slot in the queue.
bool IsReportedBack(std::size_t slot, std::string_view key);

}  // namespace Morquil
