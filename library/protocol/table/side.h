#pragma once

namespace Morquil {

/// Whose reader and writer: hosts and devices word a few keys differently. A row or a kind of value that is the same on
/// both sides knows nothing of it.
enum class Side { Host, Device };

}  // namespace Morquil
