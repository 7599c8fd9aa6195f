#pragma once

#include <cstddef>

namespace Morquil::Testing {

/// How many descriptors or handles this process has open.
std::size_t OpenHandleCount();

}  // namespace Morquil::Testing
