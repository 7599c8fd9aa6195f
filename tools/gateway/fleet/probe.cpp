#include "gateway/fleet/probe.h"

#include <array>
#include <boost/asio/connect.hpp>
#include <boost/asio/ip/tcp.hpp>
#include <boost/asio/steady_timer.hpp>
#include <utility>

namespace Morquil::Gateway {
namespace {

namespace asio = boost::asio;
using boost::system::error_code;
using Tcp = asio::ip::tcp;

constexpr auto connectLimit = std::chrono::seconds(3);
constexpr auto greetingLimit = std::chrono::seconds(2);
constexpr std::size_t mostBytes = 4'096;

Diagnosis NotConnected(const std::string& address, const error_code& error) {
    if (error == asio::error::connection_refused) {
        return {LinkState::Refused, address +
                                        " refuses connections on port 9800: the host is up, but no converter "
                                        "listens there; check the address"};
    }
    if (error == asio::error::host_unreachable || error == asio::error::network_unreachable) {
        return {LinkState::Unreachable, "there is no route to " + address + "; check the network and the address"};
    }
    return {LinkState::Unreachable, address + " does not answer; check power, cable and address"};
}

class RunningProbe final : public Probe {
public:
    RunningProbe(asio::io_context& context, std::string address, Done done)
        : resolver_(context), socket_(context), timer_(context), address_(std::move(address)), done_(std::move(done)) {}

    void Run() {
        LimitTo(connectLimit);
        resolver_.async_resolve(Tcp::v4(), address_, std::to_string(devicePort),
                                [self = Self()](error_code error, const Tcp::resolver::results_type& found) {
                                    self->OnResolved(error, found);
                                });
    }

    void Cancel() override {
        done_ = nullptr;
        End();
    }

private:
    std::shared_ptr<RunningProbe> Self() { return std::static_pointer_cast<RunningProbe>(shared_from_this()); }

    void LimitTo(std::chrono::seconds limit) {
        timer_.expires_after(limit);
        timer_.async_wait([self = Self()](error_code error) {
            if (!error) {
                self->OnTimeOut();
            }
        });
    }

    void OnResolved(error_code error, const Tcp::resolver::results_type& found) {
        if (error) {
            Finish({LinkState::Unresolved,
                    "'" + address_ + "' has no address; check the name, or the name server of this machine"});
            return;
        }
        asio::async_connect(socket_, found, [self = Self()](error_code connectError, const Tcp::endpoint&) {
            self->OnConnected(connectError);
        });
    }

    void OnConnected(error_code error) {
        if (error) {
            Finish(NotConnected(address_, error));
            return;
        }
        isConnected_ = true;
        LimitTo(greetingLimit);
        Read();
    }

    void Read() {
        socket_.async_read_some(asio::buffer(piece_),
                                [self = Self()](error_code error, std::size_t size) { self->OnRead(error, size); });
    }

    void OnRead(error_code error, std::size_t size) {
        greeting_.append(piece_.data(), size);
        if (auto diagnosis = JudgeGreeting(address_, greeting_, error || greeting_.size() >= mostBytes)) {
            Finish(*std::move(diagnosis));
        } else {
            Read();
        }
    }

    void OnTimeOut() {
        Finish(isConnected_ ? *JudgeGreeting(address_, greeting_, true)
                            : NotConnected(address_, asio::error::timed_out));
    }

    void Finish(Diagnosis diagnosis) {
        if (const Done done = std::exchange(done_, nullptr)) {
            done(std::move(diagnosis));
        }
        End();
    }

    void End() {
        error_code ignored;
        resolver_.cancel();
        timer_.cancel();
        socket_.close(ignored);
    }

    Tcp::resolver resolver_;
    Tcp::socket socket_;
    asio::steady_timer timer_;
    const std::string address_;
    Done done_;
    bool isConnected_ = false;
    std::array<char, 1'024> piece_ = {};
    std::string greeting_;
};

}  // namespace

std::shared_ptr<Probe> Probe::Start(asio::io_context& context, std::string address, Done done) {
    const auto probe = std::make_shared<RunningProbe>(context, std::move(address), std::move(done));
    probe->Run();
    return probe;
}

}  // namespace Morquil::Gateway
