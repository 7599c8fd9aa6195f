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
// The library waits 2 s for the connection itself. Later than this, something else is wrong.
constexpr std::chrono::milliseconds patience{2500};

std::string TextOf(std::chrono::milliseconds length) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%g s", static_cast<double>(length.count()) / 1000);
    return text.data();
}

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
    return TextOf(length);
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

bool Link::State::IsDecided() const {
    const bool isElsewhere = finding && finding->fault == Diagnosis::Fault::NotADevice;
    return connected || isElsewhere || (ended && (finding || Diagnosis::Explain(*ended)));
}

template <class Condition>
void Link::WaitUntil(Clock::time_point end, Condition condition) const {
    std::unique_lock lock(state_->mutex);
    // A signal handler cannot notify, so its flag is polled.
    while (!condition() && !isInterrupted_ && Clock::now() < end) {
        state_->changed.wait_until(lock, std::min(Clock::now() + interruptionInterval, end));
    }
}

void Link::AwaitDecision() {
    WaitUntil(std::min(deadline_.time, Clock::now() + std::min(patience, deadline_.length / 2)),
              [this] { return state_->connected || state_->ended; });
    std::unique_lock lock(state_->mutex);
    if (state_->connected) {
        return;
    }
    const bool needsInquiry = !state_->IsDecided();
    lock.unlock();
    const std::unique_ptr<Diagnosis::Inquiry> inquiry = needsInquiry ? Inquire() : nullptr;
    WaitUntil(deadline_.time, [this] { return state_->IsDecided(); });
    lock.lock();
    if (state_->connected) {
        return;
    }
    const std::optional<morquil::ConnectFailure> ended = state_->ended;
    const std::optional<Diagnosis::Finding> finding = state_->finding;
    const bool isDecided = state_->IsDecided();
    lock.unlock();
    ThrowNotConnected(ended, isDecided ? finding : std::nullopt);
}

std::unique_ptr<Diagnosis::Inquiry> Link::Inquire() const {
    return std::make_unique<Diagnosis::Inquiry>(address_, Diagnosis::usualLimit,
                                                [state = state_](const Diagnosis::Finding& finding) {
                                                    const std::lock_guard lock(state->mutex);
                                                    state->finding = finding;
                                                    state->changed.notify_all();
                                                });
}

void Link::ThrowNotConnected(std::optional<morquil::ConnectFailure> ended,
                             const std::optional<Diagnosis::Finding>& finding) {
    const std::string before = address_ + ": ";
    const std::string late = LateText();
    if (!ended) {
        KeepUntilExit(std::move(connecting_));
    }
    CheckIsNotInterrupted();
    if (finding) {
        throw Failure(ExitCode::Unreachable, before + finding->sentence);
    }
    if (ended) {
        throw Failure(ExitCode::Unreachable, before + ToText(*ended));
    }
    throw Failure(ExitCode::TimedOut, before + late + " within " + deadline_.Text());
}

std::string Link::LateText() const {
    try {
        Device().Silence();
        return "connected, but the device has not sent its complete state";
    } catch (const morquil::NotKnown&) {
        return "not connected";
    }
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
    WaitUntil(deadline_.time, [&outcome] { return outcome->has_value(); });
    std::unique_lock lock(state_->mutex);
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

std::string CauseOf(const std::string& address, morquil::ConnectFailure reason) {
    const std::optional<Diagnosis::Finding> known = Diagnosis::Explain(reason);
    return known ? known->sentence : Diagnosis::Diagnose(address, Diagnosis::usualLimit).sentence;
}

bool IsSilent(const morquil::Device& device, std::chrono::milliseconds limit) {
    try {
        return device.Silence() >= limit;
    } catch (const morquil::NotKnown&) {
        return false;
    }
}

std::string SilentText(std::chrono::milliseconds limit) {
    return "the device has not answered for " + TextOf(limit);
}

void KeepUntilExit(std::shared_ptr<void> kept) {
    // Never destroyed, but still reachable, so leak checkers do not report it.
    static std::mutex& mutex = *new std::mutex;
    static std::vector<std::shared_ptr<void>>& all = *new std::vector<std::shared_ptr<void>>;
    const std::lock_guard lock(mutex);
    all.push_back(std::move(kept));
}

}  // namespace Morquil::Command
