// The simulated device, for tests: a morquil-sim of their own.
#pragma once

#include <cstdio>
#include <string>

class SimulatedDevice {
public:
    /// Starts morquil-sim at a loopback address, with a script of what shall happen to the device. Hosts may connect
    /// when this returns. The script should end the device; if it does not get there, half a minute does.
    explicit SimulatedDevice(const std::string& script);
    SimulatedDevice(const SimulatedDevice&) = delete;
    SimulatedDevice& operator=(const SimulatedDevice&) = delete;
    /// Waits for the device's end.
    ~SimulatedDevice();

    const std::string& Address() const { return address_; }

private:
    std::string address_;
    std::string scriptFile_;
    std::FILE* output_ = nullptr;
};
