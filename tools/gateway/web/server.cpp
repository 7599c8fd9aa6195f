#include "gateway/web/server.h"

#include <boost/asio/ssl.hpp>
#include <random>
#include <utility>

#include "gateway/text/log.h"

namespace Morquil::Gateway {
namespace {

namespace asio = boost::asio;
using boost::system::error_code;
using Tcp = asio::ip::tcp;

std::shared_ptr<asio::ssl::context> MakeSecurity(const ServerConfig& config, error_code& error) {
    auto security = std::make_shared<asio::ssl::context>(asio::ssl::context::tls_server);
    security->set_options(asio::ssl::context::default_workarounds | asio::ssl::context::no_sslv2 |
                              asio::ssl::context::no_sslv3 | asio::ssl::context::no_tlsv1 |
                              asio::ssl::context::no_tlsv1_1,
                          error);
    if (!error) {
        security->use_certificate_chain_file(config.certificate, error);
    }
    if (!error) {
        security->use_private_key_file(config.key, asio::ssl::context::pem, error);
    }
    return security;
}

}  // namespace

std::string NewRequestId() {
    static std::mt19937_64 random{std::random_device{}()};
    char text[17];
    std::snprintf(text, sizeof text, "%016llx", static_cast<unsigned long long>(random()));
    return text;
}

Server::Server(WebContext& web)
    : web_(web), acceptor_(web.context), retry_(web.context), self_(std::make_shared<Server*>(this)) {}

std::string Server::LoadCertificate() {
    if (!web_.config.IsSecure()) {
        return {};
    }
    error_code error;
    auto security = MakeSecurity(web_.config, error);
    if (error) {
        return "the certificate " + web_.config.certificate + " with the key " + web_.config.key +
               " cannot be used: " + error.message();
    }
    security_ = std::move(security);
    return {};
}

std::string Server::Listen() {
    error_code error;
    const auto address = asio::ip::make_address(web_.config.address, error);
    if (error) {
        return "'" + web_.config.address + "' is not a numeric address";
    }
    const Tcp::endpoint endpoint(address, web_.config.port);
    acceptor_.open(endpoint.protocol(), error);
    if (!error) {
        acceptor_.set_option(asio::socket_base::reuse_address(true), error);
    }
    if (!error) {
        acceptor_.bind(endpoint, error);
    }
    if (!error) {
        acceptor_.listen(4'096, error);
    }
    if (error) {
        return "cannot listen on " + web_.config.address + " port " + std::to_string(web_.config.port) + ": " +
               error.message();
    }
    Accept();
    return {};
}

unsigned short Server::Port() const {
    error_code ignored;
    return acceptor_.local_endpoint(ignored).port();
}

void Server::Accept() {
    acceptor_.async_accept([weak = std::weak_ptr<Server*>(self_)](error_code error, Tcp::socket socket) {
        const auto self = weak.lock();
        if (self == nullptr || error == asio::error::operation_aborted || !(*self)->acceptor_.is_open()) {
            return;
        }
        if (error) {
            // Out of descriptors, most likely: some of them become free.
            (*self)->retry_.In(std::chrono::milliseconds(100), [server = *self] { server->Accept(); });
            return;
        }
        (*self)->Serve(std::move(socket));
        (*self)->Accept();
    });
}

void Server::Serve(Tcp::socket socket) {
    if (connections_.size() >= web_.config.connections) {
        return;  // which closes it
    }
    const std::uint64_t number = ++lastNumber_;
    const auto connection = std::make_shared<Connection>(web_, MakeSocket(std::move(socket), security_),
                                                         [number, weak = std::weak_ptr<Server*>(self_)] {
                                                             if (const auto self = weak.lock()) {
                                                                 (*self)->OnClosed(number);
                                                             }
                                                         });
    connections_.emplace(number, connection);
    connection->Start();
}

void Server::OnClosed(std::uint64_t number) {
    connections_.erase(number);
    if (connections_.empty() && onDrained_) {
        std::exchange(onDrained_, nullptr)();
    }
}

void Server::Drain(std::function<void()> done) {
    error_code ignored;
    acceptor_.close(ignored);
    onDrained_ = std::move(done);
    const auto connections = connections_;
    for (const auto& [number, weak] : connections) {
        if (const std::shared_ptr<Connection> connection = weak.lock()) {
            connection->Drain();
        }
    }
    if (connections.empty()) {
        std::exchange(onDrained_, nullptr)();
    }
}

}  // namespace Morquil::Gateway
