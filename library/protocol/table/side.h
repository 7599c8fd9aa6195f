#pragma once

namespace Morquil {

/// The side that reads and writes: hosts and devices spell a few keys differently. A row or a kind of value that is the
/// same on both sides ignores it.
enum class Side { Host, Device };

}  // namespace Morquil
