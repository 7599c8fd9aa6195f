#include "tests/worlds/simulation/simulated_comms.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace Morquil::Testing::Worlds {

namespace {

/// The client's limit for an attempt to connect.
constexpr Time connectLimit = 2000;

Scheduler& World() {
    return Scheduler::Instance();
}

}  // namespace

bool SimulatedComms::Open(const std::string& host, std::uint32_t port, bool) {
    using Opening = NetworkManners::Opening;
    const bool hangs = manners_.opening == Opening::Hangs;
    World().Block([this] { return signals_[signalStop]; },
                  World().Now() + (hangs ? connectLimit : manners_.openingTime));
    isOpen_ = !TakeSignal(signalStop) && manners_.opening == Opening::Succeeds && !host.empty() && port != 0;
    isArmed_ = hasTransferred_ = isOpen_;
    isOpen_ ? listener_.Opened() : listener_.OpenFailed();
    return isOpen_;
}

void SimulatedComms::Close() {
    isOpen_ = false;
    listener_.Closed();
}

std::uint32_t SimulatedComms::SetWaitMode(bool includeSocket, std::uint32_t timeoutMs) {
    includesSocket_ = includeSocket;
    timeout_ = includeSocket ? timeoutMs : 1000;
    return static_cast<std::uint32_t>(timeout_);
}

bool SimulatedComms::TakeSignal(CommsSignal signal) {
    return std::exchange(signals_[static_cast<std::size_t>(signal)], false);
}

bool SimulatedComms::HasSocketEvent() const {
    return includesSocket_ && (isArmed_ || (wire_.HasArrived() && (wire_.IsEnd() || !isReadReported_)));
}

/// An end is reported on every wait.
CommsEvent SimulatedComms::TakeSocketEvent() {
    if (wire_.HasArrived() && wire_.IsEnd()) {
        return manners_.closesAtReceive && !wire_.IsReset() ? CommsEvent::Readable : CommsEvent::SocketError;
    }
    if (wire_.HasArrived() && !isReadReported_) {
        isReadReported_ = true;
        return CommsEvent::Readable;
    }
    isArmed_ = false;
    return CommsEvent::Writable;
}

CommsEvent SimulatedComms::WaitForEvent() {
    listener_.ReadyForMore();
    World().GiveWay();
    if (std::exchange(hasTransferred_, false)) {
        silentSince_ = World().Now();
    }
    const Time deadline = World().Now() + timeout_;
    const auto hasEvent = [this] { return IsSignalled() || HasSocketEvent(); };
    while (!hasEvent() && World().Now() < deadline) {
        const Time arrival = includesSocket_ && !wire_.HasArrived() ? wire_.NextArrival() : never;
        World().Block(hasEvent, std::min(deadline, arrival));
    }
    for (const auto& [signal, event] :
         {std::pair(signalStop, CommsEvent::StopRequested), std::pair(signalSend, CommsEvent::SendRequested),
          std::pair(signalUser, CommsEvent::UserSignal)}) {
        if (TakeSignal(signal)) {
            return event;
        }
    }
    if (HasSocketEvent()) {
        return TakeSocketEvent();
    }
    listener_.TimedOut(World().Now() - silentSince_);
    return CommsEvent::Timeout;
}

/// Never joins two messages of the device, so that the listener knows where the receiver is.
int SimulatedComms::Receive(char* buffer, int length, int) {
    listener_.ReadyForMore();
    isReadReported_ = false;
    if (!isOpen_) {
        return commsFailed;
    }
    if (!wire_.HasArrived()) {
        return commsWouldBlock;
    }
    if (wire_.IsEnd()) {
        return wire_.IsReset() ? commsFailed : 0;
    }
    std::optional<DeviceMessage> whole;
    const std::string taken = wire_.Take(static_cast<std::size_t>(length), whole);
    std::copy(taken.begin(), taken.end(), buffer);
    hasTransferred_ = true;
    if (whole) {
        listener_.Received(*whole);
    }
    return static_cast<int>(taken.size());
}

int SimulatedComms::Send(const char* data, int length, int) {
    if (!isOpen_ || World().Now() >= manners_.sendsFailFrom) {
        return commsFailed;
    }
    if (World().Now() >= manners_.readsUntil) {
        isArmed_ = true;
        return commsWouldBlock;
    }
    const std::size_t taken = std::min(static_cast<std::size_t>(length), manners_.sendLimit);
    unfinished_.append(data, taken);
    hasTransferred_ = true;
    if (unfinished_.ends_with("\n\n")) {
        listener_.Sent(std::exchange(unfinished_, {}));
        World().GiveWay();
    }
    return static_cast<int>(taken);
}

bool SimulatedComms::Signal(int which) {
    if (which < signalSend || which > signalUser) {
        return false;
    }
    signals_[static_cast<std::size_t>(which)] = true;
    return true;
}

/// The device never reads again.
void SimulatedComms::WaitUntilWritable() {
    World().Block([this] { return signals_[signalStop]; }, manners_.sendsFailFrom);
}

}  // namespace Morquil::Testing::Worlds
