#pragma once

#include <string>

#include "morquil.hpp"
#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/scripted_device.h"

namespace Morquil::Testing {

/// A device played by the test, and a C++ host that is connected to it.
struct Connected {
    ScriptedDevice device{CompleteDevice()};
    morquil::Device host{morquil::Connect(device.Address())};

    ~Connected() { host.Disconnect(); }
};

}  // namespace Morquil::Testing
