// The simulated device, for tests: each starts its own morquil-sim.
#pragma once

#include <cstdio>
#include <string>

class SimulatedDevice {
public:
    /// Starts morquil-sim at a loopback address, with a script of what is to happen to the device. Hosts may connect
    /// when this returns. The script should end the device; otherwise it ends after half a minute.
    explicit SimulatedDevice(const std::string& script);
    SimulatedDevice(const SimulatedDevice&) = delete;
    SimulatedDevice& operator=(const SimulatedDevice&) = delete;
    /// Waits until the device has ended.
    ~SimulatedDevice();

    const std::string& Address() const { return address_; }

private:
    std::string address_;
    std::string scriptFile_;
    std::FILE* output_ = nullptr;
};
