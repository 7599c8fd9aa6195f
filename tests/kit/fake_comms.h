#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/kit/monitor.h"
#include "transport/abstract_comms.h"

namespace Morquil::Testing {

/// A connection without a network or a clock: the test plays the device, and the transport is the one that `MakeComms`
/// returns. Outlives that transport; `AwaitDestroyed` waits until it is gone. Threads: any.
class FakeConnection {
public:
    /// Returns the device's answer to what it has received with one send; nothing if it is silent.
    using Answer = std::function<std::string(const std::string& sent)>;

    FakeConnection() = default;
    FakeConnection(const FakeConnection&) = delete;
    FakeConnection& operator=(const FakeConnection&) = delete;

    std::unique_ptr<AbstractComms> MakeComms();

    // How the transport behaves. To be set before it is used, unless noted otherwise.

    void RefuseInitialise() { Set(canInitialise_, false); }
    void RefuseOpen() { Set(canOpen_, false); }
    void AllowOpen() { Set(canOpen_, true); }
    /// Opening blocks until a stop is signalled. May be changed at any time.
    void BlockOpen() { Set(openBlocks_, true); }
    /// Run when the transport has opened the connection, or failed to, and no longer checks signals.
    void CallAfterOpen(std::function<void()> call) { Set(openCall_, std::move(call)); }
    void RefuseConnect() { Set(canConnect_, false); }
    /// Run while the transport waits for the connection to be established.
    void CallInConnectWait(std::function<void()> call) { Set(connectWaitCall_, std::move(call)); }
    void RefuseSignals() { Set(canSignal_, false); }
    void AllowSignals() { Set(canSignal_, true); }
    /// The next `count` sends would block; negative: all of them. May be changed at any time.
    void BlockSends(int count) { Set(sendsToBlock_, count); }
    /// Sends fail from now on. May be changed at any time.
    void BreakSends() { Set(canSend_, false); }
    /// No send accepts more than `count` bytes.
    void LimitSends(std::size_t count) { Set(sendLimit_, count); }
    void AnswerWith(Answer answer) { Set(answer_, std::move(answer)); }

    // What happens on the wire, in this order. One receive returns at most 1024 bytes of a piece; it never joins two.

    void Push(std::string bytes);
    void Push(CommsEvent event, int systemError = 0);
    /// The next receive gives `result` instead of bytes.
    void PushReceiveResult(int result);

    // What has been done with the transport.

    struct Opening {
        std::string host;
        std::uint32_t port = 0;
        bool nonBlocking = true;
    };
    struct WaitMode {
        bool includeSocket = false;
        std::uint32_t timeoutMs = 0;
    };
    std::vector<Opening> Openings() const { return Get(openings_); }
    std::vector<std::int32_t> ConnectWaits() const { return Get(connectWaits_); }
    std::vector<WaitMode> WaitModes() const { return Get(waitModes_); }
    /// All bytes that have been sent, and the same as one entry for each send.
    std::string Sent() const;
    std::vector<std::string> Sends() const { return Get(sends_); }
    int Closes() const { return Get(closes_); }
    /// How many sends would have blocked.
    int BlockedSends() const { return Get(blockedSends_); }
    int WritableWaits() const { return Get(writableWaits_); }
    bool IsOpen() const { return Get(isOpen_); }
    bool IsDestroyed() const { return Get(isDestroyed_); }

    // Waits of up to 4 s. Return: whether it happened.

    bool AwaitSent(const std::string& text) const;
    bool AwaitSends(std::size_t count) const;
    bool AwaitBlockedSends(int count) const;
    /// `count` waits for a writable socket have begun. A wait ends with a stop, or when a send will not block.
    bool AwaitWritableWaits(int count) const;
    /// Opening has begun and blocks.
    bool AwaitBlockedOpen() const;
    /// Everything pushed and signalled has been handled, and the connection thread waits for more.
    bool AwaitIdle() const;
    bool AwaitClosed() const;
    bool AwaitDestroyed() const;

private:
    friend class FakeComms;

    struct Step {
        std::string bytes;  ///< returned to receives, if there are any; otherwise
        bool isResult = false;
        int result = 0;                           ///< what one receive returns, or
        CommsEvent event = CommsEvent::Readable;  ///< what one wait reports
        int systemError = 0;                      ///< errno after such a wait
        bool reported = false;                    ///< `Readable` has been reported since the last receive
        bool IsForReceive() const { return isResult || !bytes.empty(); }
    };

    template <class Value>
    static void Set(Value& value, std::type_identity_t<Value> newValue) {
        const auto lock = Monitor::Enter();
        value = std::move(newValue);
        Monitor::Changed();
    }
    template <class Value>
    static Value Get(const Value& value) {
        const auto lock = Monitor::Enter();
        return value;
    }
    void Add(Step step);
    bool HasEvent(bool includeSocket) const;
    CommsEvent TakeEvent(bool includeSocket, int& systemError);

    bool canInitialise_ = true;
    bool canOpen_ = true;
    bool openBlocks_ = false;
    bool canConnect_ = true;
    std::function<void()> connectWaitCall_;
    std::function<void()> openCall_;
    bool canSignal_ = true;
    bool canSend_ = true;
    int sendsToBlock_ = 0;
    std::size_t sendLimit_ = static_cast<std::size_t>(-1);
    Answer answer_;

    std::deque<Step> steps_;
    std::array<bool, 3> signals_{};

    std::vector<Opening> openings_;
    std::vector<std::int32_t> connectWaits_;
    std::vector<WaitMode> waitModes_;
    std::vector<std::string> sends_;
    int blockedSends_ = 0;
    int writableWaits_ = 0;
    int closes_ = 0;
    bool isOpening_ = false;
    bool isOpen_ = false;
    bool isIdle_ = false;
    bool isDestroyed_ = false;
};

}  // namespace Morquil::Testing
