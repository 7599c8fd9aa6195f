// What a host and a device send to each other; used by the device of the benchmarks and by the raw clients.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Morquil::Bench {

/// The port of devices.
inline constexpr unsigned short devicePort = 9800;

/// Where the device of the benchmarks listens: several addresses, because the system allows some 28,000 connections to
/// each. The tests use none of them.
inline constexpr int deviceAddressCount = 8;
std::string DeviceAddress(int number);

struct Exchange {
    std::string question;
    std::string answer;
};

/// Everything that is sent until a host is connected: a greeting, then question and answer, one after the other.
struct Conversation {
    std::string greeting;
    std::vector<Exchange> requests;

    std::size_t Length() const;
};
const Conversation& ConnectConversation();

/// The device's answer to a block that sets something: an acknowledgement, and the block itself.
std::string EchoOf(std::string_view block);

/// A block with this header is echoed after a flood, which repeats earlier reports with one block for each line. It is
/// the panel lock's, because the library compares only blocks with that header with the expected echo.
inline constexpr std::string_view floodHeader = "MORQUIL DEVICE:\n";
const std::string& Flood();

}  // namespace Morquil::Bench
