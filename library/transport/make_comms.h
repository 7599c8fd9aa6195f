#pragma once

#include <memory>

#include "transport/abstract_comms.h"

namespace Morquil {

/// Creates this system's transport, not yet initialised.
std::unique_ptr<AbstractComms> MakeComms();

}  // namespace Morquil
