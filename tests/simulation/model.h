#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "MorquilAPI.h"
#include "tests/simulation/expected_list.h"
#include "tests/simulation/expected_mirror.h"
#include "tests/simulation/expected_queue.h"
#include "tests/simulation/trace.h"
#include "tests/simulation/wire.h"

namespace Morquil::Simulation {

/// Knows what must hold in a world, is told of everything that happens on the wire and at the host, and fails the trace
/// of a world that breaks a rule:
///
/// - a block goes out when nothing is in flight, in the order of the slots, merged with what came before it; "PING"
///   after 9 s of silence; with a block in flight such a silence ends the connection; nothing goes out after the end
/// - the mirror is what the device has said; a change is told once per set and observer, in the order of addition,
///   unless it is the echo of a setter
/// - `Connected` comes at most once and when the state is complete, then at most one `Disconnected`, with the reason;
///   after the end nothing comes
class Model final : public WireListener {
public:
    /// `onSent` hears of every block that the device gets.
    Model(Trace& trace, std::function<void(const std::string& block)> onSent)
        : trace_(trace), onSent_(std::move(onSent)) {}

    /// The device says things that nobody can foresee: from now on only what must hold whatever it says is checked.
    void ExpectAnything() { isForeseen_ = false; }

    // What the host does.

    /// `observer` becomes a connection observer by it, if it is not null.
    void ConnectBegins(const std::size_t* observer);
    /// Before a setter that has to succeed.
    void SetterBegins(std::string_view header, const Lines& lines, bool isRemembered) {
        queue_.Add(header, lines, isRemembered);
    }
    void DisconnectBegins();
    /// `wasEnding`: what `IsEnding` has answered before.
    void DisconnectReturned(bool wasEnding);
    /// The host lets its last reference go; `isLast` when no attempt has another.
    void ReleaseBegins(bool isLast);
    /// After the call; observers are known by their numbers.
    void ConnectionObserverAdded(std::size_t observer, HRESULT result);
    void ConnectionObserverRemoved(std::size_t observer, HRESULT result);
    void PropertyObserverAdded(std::size_t observer, _MorquilPropertySetId set, HRESULT result);
    void PropertyObserverRemoved(std::size_t observer, _MorquilPropertySetId set, HRESULT result);
    /// What a getter has answered; nothing when it did not know.
    void Read(const std::string& header, const std::string& key, const std::optional<std::string>& value);

    // What the observers are told, and the end of each such call.

    void ToldConnected(std::size_t observer);
    void ToldDisconnected(std::size_t observer, _MorquilConnectToFailure reason);
    void ToldChanged(std::size_t observer, _MorquilPropertySetId set);
    void ConnectedReturns() { Return(connectedRound_, connectionObservers_); }
    void DisconnectedReturns() { Return(disconnectedRound_, connectionObservers_); }
    void ChangedReturns(_MorquilPropertySetId set);
    bool IsInCallback() { return Calls() > 0; }

    /// Nobody has anything to do at this time. `attemptIsOver`: no thread waits for the initial state any more.
    void CheckQuiet(bool attemptIsOver, bool deviceReads);
    /// What a synchronous attempt has come to.
    void CheckConnectResult(HRESULT result, _MorquilConnectToFailure reason, Time took);

    bool IsEnding() const { return ended_; }
    bool IsConnected() const { return connected_ && !ended_; }
    bool IsDestroyed() const { return destroyed_; }
    bool IsOpen() const { return open_; }

    // The wire.

    void Received(const Saying& saying) override;
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
    void End(bool isTold);
    void Silence();
    void Conclude();
    void CheckListed(ExpectedList& list, std::size_t observer, HRESULT result, bool isAdding);
    void FinishConnectionRounds();
    void FinishRoundsOf(_MorquilPropertySetId set);
    void RequireOver(PropertyRound& round);
    bool MayFailToConnect() const;
    bool MustBeConnected() const;

    /// Fails unless `holds`, if it could be foreseen.
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
    std::deque<PropertyRound> propertyRounds_;  ///< the first may be on its way

    Time connectTime_ = never;
    bool openFailed_ = false;
    bool open_ = false;
    bool closed_ = false;
    bool destroyed_ = false;
    bool released_ = false;
    bool connected_ = false;       ///< at some time
    bool nobodyWasThere_ = false;  ///< when it may have been told that the connection is there
    bool ended_ = false;           ///< or about to end
    bool mayTellEnd_ = false;
    bool mustTellEnd_ = false;
    bool tellsEnd_ = false;  ///< somebody has been told
    bool silent_ = false;    ///< nothing may be told any more
    bool pingIsDue_ = false;
    bool endIsDue_ = false;
};

}  // namespace Morquil::Simulation
