// Many programs on one machine, each at its own address.
#include <gtest/gtest.h>

#include <chrono>

#include "tests/kit/temporary_folder.h"
#include "tests/system/simulator_program/raw_host.h"
#include "tests/system/simulator_program/started_program.h"

namespace Morquil::Testing {
namespace {

constexpr std::uint16_t devicePort = 9800;

struct Device {
    std::string address;
    std::unique_ptr<StartedProgram> program;
};

/// Starts a device at the first address from `next` on at which nothing listens.
Device StartDevice(unsigned& next, const std::string& script) {
    for (int attempts = 0; attempts < 20; ++attempts) {
        Device device;
        device.address = "127.0." + std::to_string(100 + next / 250) + "." + std::to_string(1 + next % 250);
        ++next;
        device.program = std::make_unique<StartedProgram>(
            std::vector<std::string>{"--address", device.address, "--model", device.address, "--script", script});
        if (device.program->NextLine() == "listening on " + device.address + ":" + std::to_string(devicePort)) {
            return device;
        }
    }
    return {};
}

TEST(TenPrograms, ServeAtTenAddressesOfThisMachineAtOnce) {
    const TemporaryFolder folder;
    // They end by themselves when their host has gone, and they are stopped in any case, so that no failure leaves them
    // running.
    const std::string script = folder.Make("script.txt", "wait-for-host\nwait-for-no-host\nquit\n");
    // Parallel runs of this test begin at different addresses.
    unsigned next = static_cast<unsigned>(std::chrono::steady_clock::now().time_since_epoch().count() / 1000 % 20000);
    std::vector<Device> devices;
    std::vector<std::unique_ptr<RawHost>> hosts;
    for (int count = 0; count < 10; ++count) {
        devices.push_back(StartDevice(next, script));
        ASSERT_NE(devices.back().program, nullptr);
        hosts.push_back(std::make_unique<RawHost>(devices.back().address, devicePort));
        EXPECT_TRUE(hosts.back()->IsConnected()) << devices.back().address;
    }
    for (std::size_t i = 0; i < devices.size(); ++i) {
        hosts[i]->Send("GENLOCK:\nLine offset: " + std::to_string(i) + "\n\n");
    }
    for (std::size_t i = 0; i < devices.size(); ++i) {
        const std::string answer = "ACK\n\nGENLOCK:\nLine offset: " + std::to_string(i) + "\n\n";
        const std::string text = hosts[i]->ReceiveUntil(answer);
        EXPECT_TRUE(text.ends_with(answer)) << devices[i].address;
        EXPECT_NE(text.find("\nModel name: " + devices[i].address + "\n"), std::string::npos);
    }
    hosts.clear();
    for (const Device& device : devices) {
        EXPECT_EQ(device.program->AwaitEnd(), 0) << device.address;
    }
}

}  // namespace
}  // namespace Morquil::Testing
