#pragma once

#include <cstdint>

namespace Morquil::Fuzz {

/// How often this program has called `operator new`. Linking allocation_count.cpp replaces that operator.
std::uint64_t AllocationCount();

}  // namespace Morquil::Fuzz
