#pragma once

#include <cstddef>

namespace Morquil::Testing {

/// How many descriptors or handles this process has open.
std::size_t OpenHandleCount();

/// How many threads this process has.
std::size_t ThreadCount();

/// How many bytes of memory this process occupies.
std::size_t ProcessMemory();

}  // namespace Morquil::Testing
