#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "transport/socket_handle.h"

namespace Morquil::Bench {

/// Just a blocking socket: the time that the system itself needs for an exchange. A failure ends the program.
class RawClient {
public:
    explicit RawClient(const std::string& address);
    ~RawClient();
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    void Send(std::string_view bytes);
    /// Receives exactly `count` bytes.
    void Receive(std::size_t count);

private:
    SocketHandle socket_;
    std::vector<char> buffer_;
};

/// Has the conversation of a connect.
void ConnectRaw(RawClient& client);

/// Waits until the device of the benchmarks, which is starting, listens; ends the program after a time limit.
void AwaitDevice();

}  // namespace Morquil::Bench
