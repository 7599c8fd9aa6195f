#pragma once

#include <memory>

#include "transport/abstract_comms.h"

namespace Morquil {

/// Makes this system's transport, not yet initialised.
std::unique_ptr<AbstractComms> MakeComms();

}  // namespace Morquil
