#include <gtest/gtest.h>
#include <unistd.h>

#include <chrono>
#include <string>

#include "tests/kit/program_without_streams.h"
#include "tests/system/simulator_program/raw_host.h"

namespace Morquil::Simulator {
namespace {

// Tries for up to 10 s to connect to a program that prints nothing.
bool IsServed(const std::string& address) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    bool isConnected = false;
    while (!isConnected && std::chrono::steady_clock::now() < deadline) {
        Testing::RawHost host(address, 9800);
        isConnected = host.IsConnected() && host.ReceiveUntil("\n\n").starts_with("PROTOCOL PREAMBLE:");
    }
    return isConnected;
}

TEST(Program, WithoutStandardStreamsServesHostsAndOccupiesTheirNumbers) {
    const std::string address = "127.99." + std::to_string(getpid() / 250 % 250) + "." + std::to_string(getpid() % 250);
    const Testing::ProgramWithoutStreams program("\"" MORQUIL_SIMULATOR_PATH "\" --address " + address);
    ASSERT_TRUE(IsServed(address));
    EXPECT_EQ(program.StandardDescriptors(), "/dev/null /dev/null /dev/null ");
}

}  // namespace
}  // namespace Morquil::Simulator
