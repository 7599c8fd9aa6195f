#pragma once

#include <asio.hpp>
#include <chrono>
#include <cstdint>
#include <string>
#include <string_view>

namespace Morquil::Testing {

/// A plain connection to a device at any address. Every wait ends after 10 s.
class RawHost {
public:
    RawHost(const std::string& address, std::uint16_t port);

    bool IsConnected() const { return connected_; }
    void Send(std::string_view bytes);
    /// Receives until what has arrived since the last call ends with `end`. Returns: all of it.
    std::string ReceiveUntil(std::string_view end);
    /// Receives until the other side closes. Returns: what has arrived since the last call.
    std::string ReceiveToEnd();
    bool SeesClose() const { return closed_; }

private:
    void ReceiveOnce();
    /// Runs what has been started. Returns: whether it finished in time.
    bool Finish();

    asio::io_context context_;
    asio::ip::tcp::socket socket_{context_};
    bool connected_ = false;
    bool closed_ = false;
    std::string received_;
};

}  // namespace Morquil::Testing
