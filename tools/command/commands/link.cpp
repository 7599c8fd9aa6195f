#include "command/commands/link.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "command/commands/commands.h"

namespace Morquil::Command {
namespace {

constexpr std::chrono::milliseconds lookInterval{4};
constexpr std::chrono::milliseconds interruptionInterval{20};

std::unique_ptr<morquil::Connecting> Begin(const Context& context, morquil::ConnectionHandlers handlers) {
    const std::string& address = context.options.address;
    try {
        context.prepareLibrary();
        return std::make_unique<morquil::Connecting>(morquil::ConnectAsync(address, std::move(handlers)));
    } catch (const morquil::Error& error) {
        throw Failure(ExitCode::Unreachable, address + ": " + error.what());
    }
}

}  // namespace

std::string Deadline::Text() const {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%g s", static_cast<double>(length.count()) / 1000);
    return text.data();
}

Link::Link(const Context& context)
    : address_(context.options.address), deadline_(context.deadline), isInterrupted_(context.isInterrupted) {
    const auto note = [state = state_](auto change) {
        const std::lock_guard lock(state->mutex);
        change(*state);
        state->changed.notify_all();
    };
    connecting_ = Begin(
        context, {[note] { note([](State& state) { state.connected = true; }); },
                  [note](morquil::ConnectFailure reason) { note([reason](State& state) { state.ended = reason; }); }});
    AwaitDecision();
}

void Link::AwaitDecision() {
    std::unique_lock lock(state_->mutex);
    // A signal handler cannot notify, so its flag is polled.
    while (!state_->connected && !state_->ended && !isInterrupted_ && !deadline_.IsOver()) {
        state_->changed.wait_until(lock, std::min(Clock::now() + interruptionInterval, deadline_.time));
    }
    if (state_->connected) {
        return;
    }
    const std::optional<morquil::ConnectFailure> reason = state_->ended;
    lock.unlock();
    if (reason) {
        throw Failure(ExitCode::Unreachable, address_ + ": " + ToText(*reason));
    }
    KeepUntilExit(std::move(connecting_));
    CheckIsNotInterrupted();
    throw Failure(ExitCode::TimedOut, address_ + ": not connected within " + deadline_.Text());
}

Link::~Link() {
    if (deadline_.IsOver() && !isOpenEnded_) {
        KeepUntilExit(std::move(connecting_));
    } else {
        Device().Disconnect();
    }
}

bool Link::IsLost() const {
    const std::lock_guard lock(state_->mutex);
    return state_->ended.has_value();
}

void Link::CheckIsThere() const {
    if (IsLost()) {
        ThrowLost();
    }
}

void Link::ThrowLost() const {
    throw Failure(ExitCode::ConnectionLost, address_ + ": the connection was lost");
}

void Link::CheckIsNotInterrupted() const {
    if (isInterrupted_) {
        throw Interruption();
    }
}

morquil::Outcome Link::Apply(const std::function<void()>& function) const {
    const auto outcome = std::make_shared<std::optional<morquil::Outcome>>();  // guarded by the state's mutex
    const morquil::Subscription receipt =
        Device().ApplyAsync(function, [state = state_, outcome](const morquil::Outcome& known) {
            const std::lock_guard lock(state->mutex);
            *outcome = known;
            state->changed.notify_all();
        });
    std::unique_lock lock(state_->mutex);
    while (!*outcome && !isInterrupted_ && !deadline_.IsOver()) {
        state_->changed.wait_until(lock, std::min(Clock::now() + interruptionInterval, deadline_.time));
    }
    morquil::Outcome known = outcome->value_or(morquil::Outcome{.result = morquil::Result::TimedOut});
    const bool isDecided = outcome->has_value();
    lock.unlock();
    if (!isDecided) {
        CheckIsNotInterrupted();
    }
    if (known == morquil::Result::Lost) {
        ThrowLost();
    }
    return known;
}

void Link::Pause() const {
    std::unique_lock lock(state_->mutex);
    state_->changed.wait_for(lock, lookInterval, [this] { return state_->ended.has_value(); });
}

void KeepUntilExit(std::shared_ptr<void> kept) {
    // Never destroyed, but still reachable, so leak checkers do not report it.
    static std::mutex& mutex = *new std::mutex;
    static std::vector<std::shared_ptr<void>>& all = *new std::vector<std::shared_ptr<void>>;
    const std::lock_guard lock(mutex);
    all.push_back(std::move(kept));
}

}  // namespace Morquil::Command
