#include "diagnosis/visit.h"

#include <array>
#include <asio.hpp>
#include <utility>

namespace Morquil::Diagnosis {
namespace {

using asio::ip::tcp;
using End = Visit::End;

// More than the first lines are of no interest.
constexpr std::size_t mostBytes = std::size_t{64} * 1024;

End EndOfLookup(const asio::error_code& error) {
    const bool mayWorkLater = error == asio::error::host_not_found_try_again || error == asio::error::try_again;
    return mayWorkLater ? End::LookupFailed : End::NotResolved;
}

End EndOfConnecting(const asio::error_code& error) {
    if (error == asio::error::connection_refused) {
        return End::Refused;
    }
    if (error == asio::error::network_unreachable || error == asio::error::host_unreachable ||
        error == asio::error::network_down) {
        return End::NoRoute;
    }
    return error == asio::error::timed_out ? End::NoAnswer : End::Failed;
}

/// The steps of a visit. Each begins the next; the context has no more work when the visit is over.
class Steps {
public:
    Steps(asio::io_context& context, const std::function<bool(std::string_view)>& isEnough)
        : resolver_(context), socket_(context), isEnough_(isEnough) {}

    // Devices have IPv4 addresses, and the library uses the first of them, too.
    void Resolve(const std::string& address, std::uint16_t port) {
        resolver_.async_resolve(tcp::v4(), address, std::to_string(port), tcp::resolver::numeric_service,
                                [this](const asio::error_code& error, const tcp::resolver::results_type& found) {
                                    error ? Fail(EndOfLookup(error), error) : Connect(found.begin()->endpoint());
                                });
    }

    Visit Result() && { return std::move(visit_); }

private:
    void Connect(const tcp::endpoint& endpoint) {
        visit_.end = End::NoAnswer;
        socket_.async_connect(endpoint, [this](const asio::error_code& error) {
            if (error) {
                Fail(EndOfConnecting(error), error);
            } else {
                visit_.end = End::StillOpen;
                Read();
            }
        });
    }

    void Read() {
        socket_.async_read_some(asio::buffer(piece_), [this](const asio::error_code& error, std::size_t count) {
            visit_.received.append(piece_.data(), count);
            if (error) {
                visit_.end = End::HungUp;
            } else if (visit_.received.size() < mostBytes && !isEnough_(visit_.received)) {
                Read();
            }
        });
    }

    void Fail(End end, const asio::error_code& error) {
        visit_.end = end;
        visit_.reason = error.message();
    }

    tcp::resolver resolver_;
    tcp::socket socket_;
    const std::function<bool(std::string_view)>& isEnough_;
    std::array<char, 4096> piece_{};
    Visit visit_;
};

}  // namespace

Visit VisitAddress(const std::string& address, std::uint16_t port, std::chrono::milliseconds limit,
                   const std::function<bool(std::string_view received)>& isEnough, std::stop_token stop) {
    asio::io_context context;
    const std::stop_callback interrupted(std::move(stop), [&context] { context.stop(); });
    Steps steps(context, isEnough);
    steps.Resolve(address, port);
    context.run_for(limit);
    return std::move(steps).Result();
}

}  // namespace Morquil::Diagnosis
