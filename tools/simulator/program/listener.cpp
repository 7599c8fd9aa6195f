#include "simulator/program/listener.h"

#include <chrono>
#include <utility>

namespace Morquil::Simulator {

namespace {

#ifdef _WIN32
// On Windows this would let two programs listen on the same address.
constexpr bool reusesAddresses = false;
#else
// Connections of a program that has just ended do not prevent the next one from listening.
constexpr bool reusesAddresses = true;
#endif

/// The pause between attempts to accept hosts while that fails.
constexpr std::chrono::milliseconds acceptPause{100};

}  // namespace

Listener::Listener(asio::io_context& context, Actions actions)
    : acceptor_(context), retryTimer_(context), actions_(std::move(actions)) {}

asio::error_code Listener::Bind(const asio::ip::tcp::endpoint& endpoint) {
    asio::error_code error;
    acceptor_.open(endpoint.protocol(), error);
    if (!error && reusesAddresses) {
        acceptor_.set_option(asio::socket_base::reuse_address(true), error);
    }
    if (!error) {
        acceptor_.bind(endpoint, error);
    }
    return error;
}

asio::error_code Listener::Listen() {
    asio::error_code error;
    acceptor_.listen(asio::socket_base::max_listen_connections, error);
    if (!error) {
        Accept();
    }
    return error;
}

asio::ip::tcp::endpoint Listener::Endpoint() const {
    asio::error_code ignored;
    return acceptor_.local_endpoint(ignored);
}

void Listener::Close() {
    closed_ = true;
    retryTimer_.cancel();
    asio::error_code ignored;
    acceptor_.close(ignored);
}

void Listener::Accept() {
    acceptor_.async_accept([self = shared_from_this()](asio::error_code error, asio::ip::tcp::socket socket) {
        if (self->closed_ || error == asio::error::operation_aborted) {
            return;
        }
        if (error) {
            self->AcceptLater(error);
            return;
        }
        self->acceptFails_ = false;
        self->actions_.onAccepted(std::move(socket));
        if (!self->closed_) {
            self->Accept();
        }
    });
}

void Listener::AcceptLater(asio::error_code error) {
    if (!std::exchange(acceptFails_, true)) {
        actions_.onFailed(error);
    }
    retryTimer_.expires_after(acceptPause);
    retryTimer_.async_wait([self = shared_from_this()](asio::error_code stopped) {
        if (!stopped && !self->closed_) {
            self->Accept();
        }
    });
}

}  // namespace Morquil::Simulator
