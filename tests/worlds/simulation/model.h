#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "MorquilAPI.h"
#include "tests/worlds/simulation/expected_list.h"
#include "tests/worlds/simulation/expected_mirror.h"
#include "tests/worlds/simulation/expected_queue.h"
#include "tests/worlds/simulation/trace.h"
#include "tests/worlds/simulation/wire.h"

namespace Morquil::Testing::Worlds {

/// Knows what must hold in a world, is notified of everything that happens on the wire and at the host, and fails the
/// trace of a world that breaks a rule:
///
/// - a block goes out when nothing is in flight, in the order of the slots, merged with what came before it; "PING"
///   after 9 s of silence; with a block in flight such a silence ends the connection; nothing goes out after the end
/// - the mirror is what the device has sent; a change is notified once per set and observer, in the order of addition,
///   unless it is the echo of a setter
/// - `Connected` comes at most once and when the state is complete, then at most one `Disconnected`, with the reason;
///   after the end nothing comes
class Model final : public WireListener {
public:
    /// `onSent` is called with every block that the device receives.
    Model(Trace& trace, std::function<void(const std::string& block)> onSent)
        : trace_(trace), onSent_(std::move(onSent)) {}

    /// The device sends unpredictable things: from now on only what must hold whatever it sends is checked.
    void ExpectAnything() { isForeseen_ = false; }

    // What the host does.

    /// `observer` becomes a connection observer, if it is not null.
    void ConnectBegins(const std::size_t* observer);
    /// Before a setter that has to succeed.
    void SetterBegins(std::string_view header, const Lines& lines, bool isRemembered) {
        queue_.Add(header, lines, isRemembered);
    }
    void DisconnectBegins();
    /// `wasEnding`: what `IsEnding` returned before.
    void DisconnectReturned(bool wasEnding);
    /// The host releases its last reference; `isLast` if no attempt holds another.
    void ReleaseBegins(bool isLast);
    /// After the call; observers are known by their numbers.
    void ConnectionObserverAdded(std::size_t observer, HRESULT result);
    void ConnectionObserverRemoved(std::size_t observer, HRESULT result);
    void PropertyObserverAdded(std::size_t observer, _MorquilPropertySetId set, HRESULT result);
    void PropertyObserverRemoved(std::size_t observer, _MorquilPropertySetId set, HRESULT result);
    /// What a getter has returned; nothing if it did not know.
    void Read(const std::string& header, const std::string& key, const std::optional<std::string>& value);

    // The calls of the observers, and the end of each.

    void OnConnected(std::size_t observer);
    void OnDisconnected(std::size_t observer, _MorquilConnectToFailure reason);
    void OnChanged(std::size_t observer, _MorquilPropertySetId set);
    void ConnectedReturns() { Return(connectedRound_, connectionObservers_); }
    void DisconnectedReturns() { Return(disconnectedRound_, connectionObservers_); }
    void ChangedReturns(_MorquilPropertySetId set);
    bool IsInCallback() { return Calls() > 0; }

    /// No thread has anything to do at this time. `attemptIsOver`: no thread waits for the initial state any more.
    void CheckQuiet(bool attemptIsOver, bool deviceReads);
    /// The outcome of a synchronous attempt.
    void CheckConnectResult(HRESULT result, _MorquilConnectToFailure reason, Time took);

    bool IsEnding() const { return ended_; }
    bool IsConnected() const { return connected_ && !ended_; }
    bool IsDestroyed() const { return destroyed_; }
    bool IsOpen() const { return open_; }

    // The wire.

    void Received(const DeviceMessage& message) override;
    void ReadyForMore() override;
    void Opened() override;
    void OpenFailed() override;
    void Sent(const std::string& block) override;
    void TimedOut(Time silence) override;
    void Closed() override;
    void Destroyed() override;

private:
    struct PropertyRound {
        _MorquilPropertySetId set{};
        ExpectedList::Round round;
    };

    unsigned& Calls() { return calls_[Scheduler::Instance().Current()]; }
    void Return(ExpectedList::Round& round, const ExpectedList& list);
    void End(bool isNotified);
    void Silence();
    void Conclude();
    void CheckListed(ExpectedList& list, std::size_t observer, HRESULT result, bool isAdding);
    void FinishConnectionRounds();
    void FinishRoundsOf(_MorquilPropertySetId set);
    void RequireOver(PropertyRound& round);
    bool MayFailToConnect() const;
    bool MustBeConnected() const;

    /// Fails unless `holds`, if it was predictable.
    void Foresee(bool holds, const std::string& what) { trace_.Require(holds || !isForeseen_, what); }

    Trace& trace_;
    bool isForeseen_ = true;
    const std::function<void(const std::string& block)> onSent_;

    ExpectedMirror mirror_;
    ExpectedQueue queue_;
    std::map<QRN::Core::ThreadId, unsigned> calls_;  ///< how many callbacks each thread is in

    ExpectedList connectionObservers_;
    ExpectedList::Round connectedRound_;
    ExpectedList::Round disconnectedRound_;
    std::map<_MorquilPropertySetId, ExpectedList> propertyObservers_;
    std::deque<PropertyRound> propertyRounds_;  ///< the first may be in progress

    Time connectTime_ = never;
    bool openFailed_ = false;
    bool open_ = false;
    bool closed_ = false;
    bool destroyed_ = false;
    bool released_ = false;
    bool connected_ = false;      ///< at some time
    bool hadNoObserver_ = false;  ///< when `Connected` may have been due
    bool ended_ = false;          ///< or about to end
    bool mayNotifyEnd_ = false;
    bool mustNotifyEnd_ = false;
    bool endIsNotified_ = false;  ///< an observer has been notified
    bool silent_ = false;         ///< no more notifications are allowed
    bool pingIsDue_ = false;
    bool endIsDue_ = false;
};

}  // namespace Morquil::Testing::Worlds
