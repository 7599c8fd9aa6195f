#include "tests/system/simulator_program/raw_host.h"

#include <array>
#include <utility>

namespace Morquil::Testing {

RawHost::RawHost(const std::string& address, std::uint16_t port) {
    socket_.async_connect({asio::ip::make_address(address), port},
                          [this](asio::error_code error) { connected_ = !error; });
    connected_ = Finish() && connected_;
}

bool RawHost::Finish() {
    context_.restart();
    context_.run_for(std::chrono::seconds(10));
    const bool finished = context_.stopped();
    if (!finished) {
        asio::error_code ignored;
        socket_.close(ignored);
        context_.run();
    }
    return finished;
}

void RawHost::Send(std::string_view bytes) {
    asio::error_code ignored;  // a broken connection shows when the answer is read
    asio::write(socket_, asio::buffer(bytes), ignored);
}

void RawHost::ReceiveOnce() {
    std::array<char, 4096> piece{};
    socket_.async_read_some(asio::buffer(piece), [&](asio::error_code error, std::size_t length) {
        closed_ = error && error != asio::error::operation_aborted;
        received_.append(piece.data(), length);
    });
    connected_ = Finish() && !closed_;
}

std::string RawHost::ReceiveUntil(std::string_view end) {
    while (connected_ && !received_.ends_with(end)) {
        ReceiveOnce();
    }
    return std::exchange(received_, {});
}

std::string RawHost::ReceiveToEnd() {
    while (connected_) {
        ReceiveOnce();
    }
    return std::exchange(received_, {});
}

}  // namespace Morquil::Testing
