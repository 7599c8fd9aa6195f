#include "gateway/web/socket.h"

#include <boost/asio/ssl.hpp>
#include <boost/asio/write.hpp>
#include <utility>

namespace Morquil::Gateway {
namespace {

namespace asio = boost::asio;
using boost::system::error_code;
using Tcp = asio::ip::tcp;

// The system doubles it, for its own records.
constexpr int mostUnread = 16 * 1'024;

void CloseQuietly(Tcp::socket& socket) {
    error_code ignored;
    socket.close(ignored);
}

class PlainSocket final : public Socket {
public:
    explicit PlainSocket(Tcp::socket socket) : socket_(std::move(socket)) {}

    void Start(std::function<void(error_code)> done) override {
        asio::post(socket_.get_executor(), [done = std::move(done)] { done({}); });
    }
    void ReadSome(asio::mutable_buffer buffer, Transferred done) override {
        socket_.async_read_some(buffer, std::move(done));
    }
    void WriteAll(const std::vector<asio::const_buffer>& buffers, Transferred done) override {
        asio::async_write(socket_, buffers, std::move(done));
    }
    void Finish() override {
        error_code ignored;
        socket_.shutdown(Tcp::socket::shutdown_send, ignored);
    }
    void Close() override { CloseQuietly(socket_); }
    bool IsSecure() const override { return false; }
    Tcp::socket& Bottom() override { return socket_; }

private:
    Tcp::socket socket_;
};

class SecureSocket final : public Socket, public std::enable_shared_from_this<SecureSocket> {
public:
    SecureSocket(Tcp::socket socket, std::shared_ptr<asio::ssl::context> security)
        : security_(std::move(security)), stream_(std::move(socket), *security_) {}

    void Start(std::function<void(error_code)> done) override {
        stream_.async_handshake(asio::ssl::stream_base::server, std::move(done));
    }
    void ReadSome(asio::mutable_buffer buffer, Transferred done) override {
        stream_.async_read_some(buffer, std::move(done));
    }
    void WriteAll(const std::vector<asio::const_buffer>& buffers, Transferred done) override {
        asio::async_write(stream_, buffers, std::move(done));
    }
    void Finish() override {
        stream_.async_shutdown([self = shared_from_this()](error_code) {
            error_code ignored;
            self->stream_.lowest_layer().shutdown(Tcp::socket::shutdown_send, ignored);
        });
    }
    void Close() override { CloseQuietly(stream_.next_layer()); }
    bool IsSecure() const override { return true; }
    Tcp::socket& Bottom() override { return stream_.next_layer(); }

private:
    std::shared_ptr<asio::ssl::context> security_;
    asio::ssl::stream<Tcp::socket> stream_;
};

}  // namespace

std::string Socket::Peer() {
    error_code error;
    const Tcp::endpoint endpoint = Bottom().remote_endpoint(error);
    return error ? std::string() : endpoint.address().to_string();
}

void Socket::BoundUnread() {
    error_code ignored;
    Bottom().set_option(asio::socket_base::send_buffer_size(mostUnread), ignored);
}

std::shared_ptr<Socket> MakeSocket(Tcp::socket socket, std::shared_ptr<asio::ssl::context> security) {
    error_code ignored;
    socket.set_option(Tcp::no_delay(true), ignored);
    if (security == nullptr) {
        return std::make_shared<PlainSocket>(std::move(socket));
    }
    return std::make_shared<SecureSocket>(std::move(socket), std::move(security));
}

}  // namespace Morquil::Gateway
