#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "command/arguments/exit_code.h"
#include "morquil.hpp"

namespace Morquil::Command {

using Clock = std::chrono::steady_clock;

/// Until when a command must have ended.
struct Deadline {
    explicit Deadline(std::chrono::milliseconds timeout) : time(Clock::now() + timeout), length(timeout) {}

    Clock::time_point time;
    std::chrono::milliseconds length;

    bool IsOver() const { return Clock::now() >= time; }
    /// "5 s", for messages.
    std::string Text() const;
};

struct Context;

/// The connection of one command.
class Link {
public:
    /// Connects.
    /// Throws: Failure, Unreachable with the reason or TimedOut; Interruption. An attempt that is given up is
    /// left to the end of the process: taking it back could take its time.
    explicit Link(const Context& context);
    /// Disconnects; after the time is over the connection is left to the end of the process instead.
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    const morquil::Device& Device() const { return connecting_->device; }
    const std::string& Address() const { return address_; }
    const Command::Deadline& Until() const { return deadline_; }

    /// From here on the command may take any time.
    void BecomeOpenEnded() { isOpenEnded_ = true; }

    /// Whether the connection has ended.
    bool IsLost() const;
    /// Throws: Failure, ConnectionLost, once the connection has ended.
    void CheckIsThere() const;

    /// Asks `condition` every few milliseconds until it holds or `end` has come.
    /// Returns: whether it holds.
    /// Throws: Failure, ConnectionLost; Interruption.
    template <class Condition>
    bool Await(Clock::time_point end, Condition condition) const {
        while (!condition()) {
            CheckIsThere();
            CheckIsNotInterrupted();
            if (Clock::now() >= end) {
                return false;
            }
            Pause();
        }
        return true;
    }

private:
    struct State {
        std::mutex mutex;
        std::condition_variable changed;
        bool connected = false;
        std::optional<morquil::ConnectFailure> ended;
    };

    void AwaitDecision();
    void CheckIsNotInterrupted() const;
    /// Until the next look, or until the connection ends.
    void Pause() const;

    const std::string address_;
    const Command::Deadline deadline_;
    const std::atomic<bool>& isInterrupted_;
    const std::shared_ptr<State> state_ = std::make_shared<State>();
    std::unique_ptr<morquil::Connecting> connecting_;
    bool isOpenEnded_ = false;
};

/// Keeps what belongs to the library from being taken back, to the end of the process.
void LeaveToTheProcess(std::shared_ptr<void> left);

}  // namespace Morquil::Command
