#pragma once

#include <string>

#include "morquil.hpp"
#include "tests/host/complete_device.h"
#include "tests/support/scripted_device.h"

namespace Morquil::Test {

/// A device played by the test, and a C++ host that is connected to it.
struct Connected {
    Testing::ScriptedDevice device{CompleteDevice()};
    morquil::Device host{morquil::Connect(device.Address())};

    ~Connected() { host.Disconnect(); }
};

}  // namespace Morquil::Test
