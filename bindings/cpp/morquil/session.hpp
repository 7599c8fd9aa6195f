// A connection that is restored after a loss.
#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <random>
#include <string>
#include <thread>
#include <utility>

#include "morquil/device.hpp"

namespace morquil {

/// What a host wants to know about a session. An empty handler is not called. Handlers are called one after the other.
struct SessionHandlers {
    /// The device is connected: the first time, and again after each loss. It is a new object each time; subscribe
    /// again.
    std::function<void(const Device&)> connected = {};
    /// An established connection has ended. Attempts to reconnect have begun.
    std::function<void(ConnectFailure)> lost = {};
    /// An attempt has failed; the next one begins after this time.
    std::function<void(ConnectFailure, std::chrono::milliseconds)> attemptFailed = {};
};

struct SessionOptions {
    /// Runs the handlers; the default runs them on the session's own thread.
    Executor executor = RunAtOnce();
    /// Waits between attempts start with `firstDelay` and double up to `longestDelay`; each is varied by up to a
    /// quarter, so that the hosts of a device that was switched off do not all reconnect at once.
    std::chrono::milliseconds firstDelay{250};
    std::chrono::milliseconds longestDelay{5000};
};

/// Keeps a device connected: connects, and reconnects after every loss, until it is stopped or destroyed.
class Session {
public:
    Session(std::string address, SessionHandlers handlers, SessionOptions options = {})
        : state_(std::make_shared<State>(std::move(address), std::move(handlers), std::move(options))),
          thread_([state = state_] { state->Run(); }) {}
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    /// Stops the session. If one of its own handlers destroys it, the session's thread ends by itself afterwards.
    ~Session() {
        state_->Stop();
        if (thread_.get_id() == std::this_thread::get_id()) {
            thread_.detach();
        } else {
            thread_.join();
        }
    }

    /// Ends the connection and all attempts; no handler starts afterwards.
    /// Threads: any.
    void Stop() { state_->Stop(); }

    /// The device, while it is connected.
    std::optional<Device> Current() const {
        const std::lock_guard lock(state_->mutex);
        return state_->current;
    }

    /// `Device::Apply` for the device that is connected now, which `function` gets as its argument. Between two
    /// connections the outcome is `Lost` at once: a change is made now or not at all, not when the device is back.
    template <class Function>
    Outcome Apply(Function&& function, std::chrono::milliseconds limit = std::chrono::seconds(10)) const {
        const std::optional<Device> device = Current();
        return device ? device->Apply([&] { function(*device); }, limit) : Outcome();
    }

private:
    /// Shared with the thread, which may outlive the session by the rest of a handler.
    struct State : std::enable_shared_from_this<State> {
        State(std::string deviceAddress, SessionHandlers sessionHandlers, SessionOptions sessionOptions)
            : address(std::move(deviceAddress)),
              handlers(std::move(sessionHandlers)),
              options(std::move(sessionOptions)),
              gate(std::make_shared<detail::Gate>(options.executor)) {}

        /// The progress of one connection. Each connection has its own, so late events of an old one are ignored.
        struct Progress {
            bool connected = false;
            std::optional<ConnectFailure> ended = {};
        };

        void Run() {
            [[maybe_unused]] const Apartment apartment;
            std::chrono::milliseconds delay = options.firstDelay;
            while (!IsStopped()) {
                const auto progress = std::make_shared<Progress>();
                const ConnectFailure reason = Serve(progress);
                if (progress->connected) {
                    delay = options.firstDelay;
                }
                const std::chrono::milliseconds pause = Varied(delay);
                if (!progress->connected) {
                    Notify(&SessionHandlers::attemptFailed, reason, pause);
                }
                Wait(pause);
                // In parentheses: <windows.h> may define min as a macro.
                delay = (std::min)(2 * delay, options.longestDelay);
            }
        }

        /// Runs one connection from its beginning to its end. Returns why it ended.
        ConnectFailure Serve(const std::shared_ptr<Progress>& progress) {
            try {
                const Connecting connecting = ConnectAsync(
                    address, {[this, progress] { Update([&] { progress->connected = true; }); },
                              [this, progress](ConnectFailure reason) { Update([&] { progress->ended = reason; }); }});
                WaitFor([&] { return progress->connected || progress->ended; });
                const bool connected = Announce(connecting.device, *progress);
                WaitFor([&] { return progress->ended.has_value(); });
                connecting.device.Disconnect();
                return Withdraw(*progress, connected);
            } catch (const Error&) {
                return ConnectFailure::NoResponse;
            }
        }

        bool Announce(const Device& device, const Progress& progress) {
            {
                const std::lock_guard lock(mutex);
                if (!progress.connected || stopped) {
                    return false;
                }
                current = device;
            }
            Notify(&SessionHandlers::connected, device);
            return true;
        }

        ConnectFailure Withdraw(const Progress& progress, bool connected) {
            ConnectFailure reason{};
            {
                const std::lock_guard lock(mutex);
                reason = progress.ended.value_or(ConnectFailure::NoResponse);
                current.reset();
            }
            if (connected) {
                Notify(&SessionHandlers::lost, reason);
            }
            return reason;
        }

        /// Hands a handler, if the host has set it, to the executor.
        template <class Handler, class... Arguments>
        void Notify(Handler SessionHandlers::*handler, Arguments... arguments) {
            if (handlers.*handler) {
                detail::Gate::Pass(gate, [self = this->shared_from_this(), handler, arguments...] {
                    (self->handlers.*handler)(arguments...);
                });
            }
        }

        template <class Change>
        void Update(Change change) {
            const std::lock_guard lock(mutex);
            change();
            changed.notify_all();
        }

        template <class Condition>
        void WaitFor(Condition condition) {
            std::unique_lock lock(mutex);
            changed.wait(lock, [&] { return stopped || condition(); });
        }

        void Wait(std::chrono::milliseconds pause) {
            std::unique_lock lock(mutex);
            changed.wait_for(lock, pause, [&] { return stopped; });
        }

        bool IsStopped() {
            const std::lock_guard lock(mutex);
            return stopped;
        }

        void Stop() {
            gate->Close();
            Update([&] { stopped = true; });
        }

        std::chrono::milliseconds Varied(std::chrono::milliseconds delay) {
            const auto quarter = static_cast<int>(delay.count() / 4);
            return delay + std::chrono::milliseconds(std::uniform_int_distribution<int>(-quarter, quarter)(random));
        }

        const std::string address;
        const SessionHandlers handlers;
        const SessionOptions options;
        const std::shared_ptr<detail::Gate> gate;
        std::minstd_rand random{std::random_device{}()};

        std::mutex mutex;
        std::condition_variable changed;
        bool stopped = false;
        std::optional<Device> current;
    };

    std::shared_ptr<State> state_;
    std::thread thread_;
};

}  // namespace morquil
