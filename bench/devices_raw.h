#pragma once

#include <string>
#include <vector>

namespace Morquil::Bench {

/// Connects to all addresses at once and has the conversation of a connect with each, on this one thread: what the
/// system itself takes for it. Returns when all are complete.
void ConnectAllRaw(const std::vector<std::string>& addresses);

/// Allows this program all the descriptors that the system lets it have.
void AllowManyDescriptors();

}  // namespace Morquil::Bench
