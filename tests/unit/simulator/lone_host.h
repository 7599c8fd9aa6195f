// A simulated device with one host.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "simulator/device/simulated_device.h"

namespace Morquil::Simulator {

class LoneHost {
public:
    explicit LoneHost(const DeviceIdentity& identity = {}) : device(identity) {
        device.Connect(host);
        greeting = device.TakeTextFor(host);
    }

    /// Sends; returns the reply.
    std::string Ask(std::string_view text) {
        device.Receive(host, text);
        return device.TakeTextFor(host);
    }

    /// Sends one block with one line. Returns whether it is acknowledged.
    bool Set(const std::string& block, const std::string& line) {
        return Ask(block + ":\n" + line + "\n\n").starts_with("ACK\n\n");
    }

    /// Changes both modes; fails the test unless the device accepts them.
    void SetModes(const std::string& input, const std::string& output) {
        EXPECT_TRUE(Set("VIDEO INPUT", "Video mode: " + input)) << input;
        EXPECT_TRUE(Set("VIDEO OUTPUT", "Video mode: " + output)) << output;
    }

    /// Everything that the device has sent since the last call.
    std::string Receive() { return device.TakeTextFor(host); }

    /// The value of a key in the device's complete dump; empty when it has none.
    std::string Value(const std::string& block, const std::string& key) {
        const std::string dump = "\n\n" + device.CompleteDump();
        const std::size_t start = dump.find("\n\n" + block + ":\n");
        const std::string text = dump.substr(start + 2, dump.find("\n\n", start + 2) - start - 1);
        const std::size_t line = text.find("\n" + key + ": ");
        if (start == std::string::npos || line == std::string::npos) {
            return {};
        }
        const std::size_t value = line + key.size() + 3;
        return text.substr(value, text.find('\n', value) - value);
    }

    static constexpr SimulatedDevice::HostId host = 1;
    SimulatedDevice device;
    std::string greeting;
};

}  // namespace Morquil::Simulator
