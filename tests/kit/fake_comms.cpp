#include "tests/kit/fake_comms.h"

#include <algorithm>
#include <cerrno>
#include <numeric>

#include "tests/kit/monitor.h"

namespace Morquil::Testing {

/// The transport's end of a `FakeConnection`.
class FakeComms final : public AbstractComms {
public:
    explicit FakeComms(FakeConnection& connection) : connection_(connection) {}
    ~FakeComms() override { connection_.Set(connection_.isDestroyed_, true); }

    bool Initialise() override { return connection_.Get(connection_.canInitialise_); }

    bool Open(const std::string& host, std::uint32_t port, bool nonBlocking) override {
        OpenOrNot(host, port, nonBlocking);
        if (const std::function<void()> call = connection_.Get(connection_.openCall_)) {
            call();
        }
        return connection_.IsOpen();
    }

    void OpenOrNot(const std::string& host, std::uint32_t port, bool nonBlocking) {
        auto lock = Monitor::Enter();
        connection_.openings_.push_back({host, port, nonBlocking});
        connection_.isOpening_ = true;
        Monitor::Changed();
        bool& stop = connection_.signals_[signalStop];
        Monitor::WaitUntil(lock, [&] { return stop || !connection_.openBlocks_; });
        connection_.isOpening_ = false;
        connection_.isOpen_ = !std::exchange(stop, false) && connection_.canOpen_;
    }

    bool WaitForConnect(std::int32_t timeoutMs) override {
        if (const std::function<void()> call = connection_.Get(connection_.connectWaitCall_)) {
            call();
        }
        const auto lock = Monitor::Enter();
        connection_.connectWaits_.push_back(timeoutMs);
        return connection_.canConnect_;
    }

    bool Attach(SocketHandle, bool) override { return true; }

    void Close() override {
        const auto lock = Monitor::Enter();
        ++connection_.closes_;
        connection_.isOpen_ = false;
        Monitor::Changed();
    }

    std::uint32_t SetWaitMode(bool includeSocket, std::uint32_t timeoutMs) override {
        const auto lock = Monitor::Enter();
        connection_.waitModes_.push_back({includeSocket, timeoutMs});
        includeSocket_ = includeSocket;
        return includeSocket ? timeoutMs : 1000;
    }

    CommsEvent WaitForEvent() override {
        auto lock = Monitor::Enter();
        connection_.isIdle_ = true;
        Monitor::Changed();
        Monitor::WaitUntil(lock, [&] { return connection_.HasEvent(includeSocket_); });
        connection_.isIdle_ = false;
        int systemError = 0;
        const CommsEvent event = connection_.TakeEvent(includeSocket_, systemError);
        errno = systemError;
        return event;
    }

    int Receive(char* buffer, int length, int) override {
        const auto lock = Monitor::Enter();
        if (connection_.steps_.empty() || !connection_.steps_.front().IsForReceive()) {
            return commsWouldBlock;
        }
        FakeConnection::Step& step = connection_.steps_.front();
        step.reported = false;
        if (step.isResult) {
            const int result = step.result;
            connection_.steps_.pop_front();
            return result;
        }
        const std::size_t count = std::min(step.bytes.size(), static_cast<std::size_t>(length));
        std::copy_n(step.bytes.begin(), count, buffer);
        step.bytes.erase(0, count);
        if (step.bytes.empty()) {
            connection_.steps_.pop_front();
        }
        return static_cast<int>(count);
    }

    int Send(const char* data, int length, int) override {
        std::string sent;
        FakeConnection::Answer answer;
        {
            const auto lock = Monitor::Enter();
            if (connection_.sendsToBlock_ != 0) {
                connection_.sendsToBlock_ -= connection_.sendsToBlock_ > 0 ? 1 : 0;
                ++connection_.blockedSends_;
                Monitor::Changed();
                return commsWouldBlock;
            }
            if (!connection_.canSend_) {
                return commsFailed;
            }
            sent.assign(data, std::min(static_cast<std::size_t>(length), connection_.sendLimit_));
            connection_.sends_.push_back(sent);
            answer = connection_.answer_;
            Monitor::Changed();
        }
        const std::string answered = answer ? answer(sent) : std::string();
        if (!answered.empty()) {
            connection_.Push(answered);
        }
        return static_cast<int>(sent.size());
    }

    bool Signal(int which) override {
        const auto lock = Monitor::Enter();
        if (!connection_.canSignal_ || which < signalSend || which > signalUser) {
            return false;
        }
        connection_.signals_[static_cast<std::size_t>(which)] = true;
        Monitor::Changed();
        return true;
    }

    void WaitUntilWritable() override {
        auto lock = Monitor::Enter();
        ++connection_.writableWaits_;
        Monitor::Changed();
        Monitor::WaitUntil(lock, [&] { return connection_.signals_[signalStop] || connection_.sendsToBlock_ >= 0; });
    }

private:
    FakeConnection& connection_;
    bool includeSocket_ = true;
};

std::unique_ptr<AbstractComms> FakeConnection::MakeComms() {
    return std::make_unique<FakeComms>(*this);
}

void FakeConnection::Add(Step step) {
    const auto lock = Monitor::Enter();
    steps_.push_back(std::move(step));
    Monitor::Changed();
}

void FakeConnection::Push(std::string bytes) {
    Step step;
    step.bytes = std::move(bytes);
    Add(std::move(step));
}

void FakeConnection::Push(CommsEvent event, int systemError) {
    Step step;
    step.event = event;
    step.systemError = systemError;
    Add(std::move(step));
}

void FakeConnection::PushReceiveResult(int result) {
    Step step;
    step.isResult = true;
    step.result = result;
    Add(std::move(step));
}

/// A piece of bytes is reported once for each receive, as by a socket.
bool FakeConnection::HasEvent(bool includeSocket) const {
    const bool signalled = std::find(signals_.begin(), signals_.end(), true) != signals_.end();
    return signalled || (includeSocket && !steps_.empty() && !steps_.front().reported);
}

CommsEvent FakeConnection::TakeEvent(bool includeSocket, int& systemError) {
    for (const auto& [signal, event] :
         {std::pair(signalStop, CommsEvent::StopRequested), std::pair(signalSend, CommsEvent::SendRequested),
          std::pair(signalUser, CommsEvent::UserSignal)}) {
        if (std::exchange(signals_[static_cast<std::size_t>(signal)], false)) {
            return event;
        }
    }
    if (!includeSocket) {
        return CommsEvent::Timeout;
    }
    if (steps_.front().IsForReceive()) {
        steps_.front().reported = true;
        return CommsEvent::Readable;
    }
    const Step step = steps_.front();
    steps_.pop_front();
    systemError = step.systemError;
    return step.event;
}

std::string FakeConnection::Sent() const {
    const auto lock = Monitor::Enter();
    return std::accumulate(sends_.begin(), sends_.end(), std::string());
}

bool FakeConnection::AwaitSent(const std::string& text) const {
    return Monitor::Await(
        [&] { return std::accumulate(sends_.begin(), sends_.end(), std::string()).find(text) != std::string::npos; });
}

bool FakeConnection::AwaitSends(std::size_t count) const {
    return Monitor::Await([&] { return sends_.size() >= count; });
}

bool FakeConnection::AwaitBlockedSends(int count) const {
    return Monitor::Await([&] { return blockedSends_ >= count; });
}

bool FakeConnection::AwaitWritableWaits(int count) const {
    return Monitor::Await([&] { return writableWaits_ >= count; });
}

bool FakeConnection::AwaitBlockedOpen() const {
    return Monitor::Await([&] { return isOpening_ && openBlocks_; });
}

bool FakeConnection::AwaitIdle() const {
    return Monitor::Await([&] { return isIdle_ && !HasEvent(true); });
}

bool FakeConnection::AwaitClosed() const {
    return Monitor::Await([&] { return closes_ > 0; });
}

bool FakeConnection::AwaitDestroyed() const {
    return Monitor::Await([&] { return isDestroyed_; });
}

}  // namespace Morquil::Testing
