#pragma once

#include <atomic>
#include <string>
#include <thread>

#include "tests/kit/scripted_device.h"

namespace Morquil::Testing {

/// A device that keeps reporting a new gain to the connected host until the end of this scope.
class Flood {
public:
    explicit Flood(ScriptedDevice& device) : thread_([this, &device] { Run(device); }) {}
    ~Flood() {
        isOver_ = true;
        thread_.join();
    }
    Flood(const Flood&) = delete;
    Flood& operator=(const Flood&) = delete;

private:
    void Run(ScriptedDevice& device) {
        for (int gain = 1; !isOver_; ++gain) {
            device.Send("VIDEO PROC AMP:\nGain: " + std::to_string(gain) + "\n\n");
        }
    }

    std::atomic<bool> isOver_ = false;
    std::thread thread_;
};

}  // namespace Morquil::Testing
