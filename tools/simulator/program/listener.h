#pragma once

#include <asio.hpp>
#include <functional>
#include <memory>

namespace Morquil::Simulator {

/// Accepts connections at one address. Pending operations keep it alive; once closed it does nothing more.
class Listener : public std::enable_shared_from_this<Listener> {
public:
    struct Actions {
        std::function<void(asio::ip::tcp::socket)> onAccepted;
        /// Called when connections cannot be accepted, and then not again until accepting works. It is tried again.
        std::function<void(asio::error_code)> onFailed;
    };

    Listener(asio::io_context& context, Actions actions);

    /// Occupies the address. Returns why that is impossible, or no error.
    asio::error_code Bind(const asio::ip::tcp::endpoint& endpoint);
    /// Lets hosts connect. Returns why that is impossible, or no error.
    asio::error_code Listen();
    /// The address that it occupies.
    asio::ip::tcp::endpoint Endpoint() const;
    void Close();

private:
    void Accept();
    void AcceptLater(asio::error_code error);

    asio::ip::tcp::acceptor acceptor_;
    asio::steady_timer retryTimer_;
    Actions actions_;
    bool acceptFails_ = false;
    bool closed_ = false;
};

}  // namespace Morquil::Simulator
