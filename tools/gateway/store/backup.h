// A copy of a database that is in use. Only sources of this folder include this.
#pragma once

#include <atomic>
#include <string>

namespace Morquil::Gateway {

/// Copies the database to `to`, which must not exist, as it is at one moment. A copy that fails, or is stopped by
/// `isEnding`, leaves nothing.
/// Returns: why it failed; empty if it did not.
std::string BackUp(const std::string& from, const std::string& to, const std::atomic<bool>& isEnding);

}  // namespace Morquil::Gateway
