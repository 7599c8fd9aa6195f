#include "simulator/program/descriptor_limit.h"

namespace Morquil::Simulator {

std::size_t RaiseDescriptorLimit(std::size_t wanted) {
    // Windows limits the sockets of a process by its memory only.
    return wanted;
}

}  // namespace Morquil::Simulator
