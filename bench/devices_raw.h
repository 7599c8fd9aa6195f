#pragma once

#include <string>
#include <vector>

namespace Morquil::Bench {

/// Connects to all addresses at once and has the conversation of a connect with each, on the calling thread: the time
/// that the system itself needs. Returns when all are complete.
void ConnectAllRaw(const std::vector<std::string>& addresses);

/// Raises this program's limit of descriptors to the system's maximum.
void AllowManyDescriptors();

}  // namespace Morquil::Bench
