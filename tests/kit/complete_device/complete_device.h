#pragma once

#include <string>

#include "tests/kit/scripted_device.h"

namespace Morquil::Testing {

/// What a usable device sends first, its own block last.
extern const char* const preamble;
extern const char* const deviceBlock;

/// All settings that a connection waits for, except the two blocks above.
extern const char* const settingsBlocks;

/// A device that greets a host with its settings, acknowledges and answers every request.
DeviceScript CompleteDevice();

}  // namespace Morquil::Testing
