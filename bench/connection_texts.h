// What a host and a device say to each other; the device of the benchmarks and their raw clients read it from here.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Bench {

/// The port of devices.
inline constexpr unsigned short devicePort = 9800;

/// Where the device of the benchmarks listens: several addresses, because the system has some 28,000 connections for
/// each. None that tests use.
inline constexpr int deviceAddressCount = 8;
std::string DeviceAddress(int number);

struct Exchange {
    std::string question;
    std::string answer;
};

/// All that is said until a host is connected: a greeting, then question and answer, one after the other.
struct Conversation {
    std::string greeting;
    std::vector<Exchange> requests;

    std::size_t Length() const;
};
const Conversation& ConnectConversation();

/// What the device answers to a block that sets something: that it has it, and the block itself.
std::string EchoOf(std::string_view block);

/// A block with this header is echoed behind a flood: reports of what the device has said before, each line a block.
/// The lock of the panel, because the library compares no other block with that echo.
inline constexpr std::string_view floodHeader = "MORQUIL DEVICE:\n";
const std::string& Flood();

}  // namespace Morquil::Bench
