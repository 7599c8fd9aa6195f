#pragma once

#include <boost/asio/io_context.hpp>
#include <boost/asio/steady_timer.hpp>
#include <functional>
#include <memory>
#include <utility>

namespace Morquil::Gateway {

/// A timer whose handler does not run once it has been cancelled, set anew or destroyed, even if it was due already.
/// Threads: the context's.
class Alarm {
public:
    using Handler = std::function<void()>;

    explicit Alarm(boost::asio::io_context& context) : timer_(context) {}

    void In(std::chrono::steady_clock::duration delay, Handler handler) {
        handler_ = std::make_shared<Handler>(std::move(handler));
        timer_.expires_after(delay);
        timer_.async_wait([weak = std::weak_ptr<Handler>(handler_)](const boost::system::error_code&) {
            // Held here, so that the handler may cancel or set the timer.
            if (const std::shared_ptr<Handler> due = weak.lock()) {
                (*due)();
            }
        });
    }

    void Cancel() {
        handler_ = nullptr;
        timer_.cancel();
    }

private:
    boost::asio::steady_timer timer_;
    std::shared_ptr<Handler> handler_;
};

}  // namespace Morquil::Gateway
