#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "command/arguments/exit_code.h"
#include "diagnosis/diagnosis.h"
#include "morquil.hpp"

namespace Morquil::Command {

using Clock = std::chrono::steady_clock;

/// The time by which a command must end.
struct Deadline {
    explicit Deadline(std::chrono::milliseconds timeout) : time(Clock::now() + timeout), length(timeout) {}

    Clock::time_point time;
    std::chrono::milliseconds length;

    bool IsOver() const { return Clock::now() >= time; }
    /// The time limit for messages: "5 s".
    std::string Text() const;
};

struct Context;

/// The connection of one command.
class Link {
public:
    /// Connects.
    /// Throws: Failure with Unreachable and the cause, or with TimedOut; Interruption. An abandoned attempt is left
    /// running until the process ends, because cancelling it could take its full time.
    explicit Link(const Context& context);
    /// Disconnects. Once the time is up, the connection is left open until the process ends instead.
    ~Link();
    Link(const Link&) = delete;
    Link& operator=(const Link&) = delete;

    const morquil::Device& Device() const { return connecting_->device; }
    const std::string& Address() const { return address_; }
    const Command::Deadline& Until() const { return deadline_; }

    /// Removes the time limit from here on.
    void BecomeOpenEnded() { isOpenEnded_ = true; }

    /// Whether the connection has ended.
    bool IsLost() const;
    /// Throws: Failure with ConnectionLost, if the connection has ended.
    void CheckIsThere() const;

    /// Calls `function`, which sets values, and waits until the device has confirmed or refused them, or until the time
    /// is up.
    /// Throws: Failure with ConnectionLost; Interruption; what `function` throws.
    morquil::Outcome Apply(const std::function<void()>& function) const;

    /// Checks `condition` every few milliseconds until it holds or `end` is reached.
    /// Returns: whether it holds.
    /// Throws: Failure with ConnectionLost; Interruption.
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
        std::optional<Diagnosis::Finding> finding;  // why there is no connection

        bool IsDecided() const;
    };

    void AwaitDecision();
    /// Finds out why there is no connection.
    std::unique_ptr<Diagnosis::Inquiry> Inquire() const;
    [[noreturn]] void ThrowNotConnected(std::optional<morquil::ConnectFailure> ended,
                                        const std::optional<Diagnosis::Finding>& finding);
    std::string LateText() const;
    /// Waits until the condition on the state holds, the command is interrupted, or `end`.
    template <class Condition>
    void WaitUntil(Clock::time_point end, Condition condition) const;
    void CheckIsNotInterrupted() const;
    [[noreturn]] void ThrowLost() const;
    /// Waits until the next check, or until the connection ends.
    void Pause() const;

    const std::string address_;
    const Command::Deadline deadline_;
    const std::atomic<bool>& isInterrupted_;
    const std::shared_ptr<State> state_ = std::make_shared<State>();
    std::unique_ptr<morquil::Connecting> connecting_;
    bool isOpenEnded_ = false;
};

/// Why there is no connection, for people. Looks for itself if the library's reason does not say.
std::string CauseOf(const std::string& address, morquil::ConnectFailure reason);

/// Whether a connected device has been silent for `limit`. One whose connection has ended is not.
bool IsSilent(const morquil::Device& device, std::chrono::milliseconds limit);
/// "the device has not answered for 18 s".
std::string SilentText(std::chrono::milliseconds limit);

/// Keeps an object of the library alive until the process ends.
void KeepUntilExit(std::shared_ptr<void> kept);

}  // namespace Morquil::Command
