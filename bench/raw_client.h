#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "transport/socket_handle.h"

namespace Morquil::Bench {

/// A blocking socket and nothing else: what the system itself takes for an exchange. A failure ends the program.
class RawClient {
public:
    explicit RawClient(const std::string& address);
    ~RawClient();
    RawClient(const RawClient&) = delete;
    RawClient& operator=(const RawClient&) = delete;

    void Send(std::string_view bytes);
    /// Receives just so many bytes.
    void Receive(std::size_t count);

private:
    SocketHandle socket_;
    std::vector<char> buffer_;
};

/// Connects and has the conversation of a connect.
void ConnectRaw(RawClient& client);

/// Waits until the device of the benchmarks, which is being started, listens; ends the program when it does not.
void AwaitDevice();

}  // namespace Morquil::Bench
