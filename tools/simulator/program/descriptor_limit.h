#pragma once

#include <cstddef>

namespace Morquil::Simulator {

/// Lets this process open `wanted` descriptors, or as many as the system allows.
/// Returns: how many it can open now.
std::size_t RaiseDescriptorLimit(std::size_t wanted);

}  // namespace Morquil::Simulator
