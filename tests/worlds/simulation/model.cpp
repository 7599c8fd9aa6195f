#include "tests/worlds/simulation/model.h"

#include <utility>

#include "tests/unit/device/recording_observers.h"

namespace Morquil::Testing::Worlds {

namespace {

constexpr Time initialStateLimit = 120'000;
constexpr Time silenceLimit = 9000;

std::string Name(std::size_t observer) {
    return "observer " + std::to_string(observer);
}

}  // namespace

void Model::ConnectBegins(const std::size_t* observer) {
    connectTime_ = Scheduler::Instance().Now();
    if (observer != nullptr && !connectionObservers_.Has(*observer)) {
        connectionObservers_.Add(*observer);
    }
}

/// The end has begun. Connection observers have to be notified of it if `isNotified`.
void Model::End(bool isNotified) {
    if (ended_) {
        return;
    }
    ended_ = true;
    mayNotifyEnd_ = mustNotifyEnd_ = isNotified;
    Silence();
}

void Model::Silence() {
    propertyRounds_.clear();
    if (IsInCallback()) {
        connectedRound_.Cancel();
    }
}

void Model::DisconnectBegins() {
    if (connectTime_ != never) {
        End(true);
        // An attempt that has failed without an observer is already over.
        mustNotifyEnd_ &= isForeseen_ && !MayFailToConnect();
    }
}

/// A host that has ended the connection outside any callback has been notified of everything.
void Model::DisconnectReturned(bool wasEnding) {
    if (!wasEnding && !IsInCallback() && connectTime_ != never) {
        FinishConnectionRounds();
        silent_ = true;
    }
}

void Model::ReleaseBegins(bool isLast) {
    released_ = true;
    if (!isLast) {
        return;
    }
    if (ended_) {
        Silence();
    } else {
        End(false);
    }
    if (IsInCallback()) {
        disconnectedRound_.Cancel();
        mustNotifyEnd_ = false;
    }
}

void Model::CheckListed(ExpectedList& list, std::size_t observer, HRESULT result, bool isAdding) {
    trace_.Require(result == (list.Has(observer) == isAdding ? S_FALSE : S_OK), "wrong answer of a list of observers");
    isAdding && !list.Has(observer) ? list.Add(observer) : static_cast<void>(0);
    isAdding ? static_cast<void>(0) : list.Remove(observer);
}

/// Outside any callback this list, too, changes only between the rounds. A round without observers leaves no trace.
void Model::FinishConnectionRounds() {
    if (IsInCallback()) {
        return;
    }
    trace_.Require(!connectionObservers_.Next(connectedRound_), "not every observer was notified of the connection");
    connectedRound_.Cancel();
    if (endIsNotified_ || connectionObservers_.IsEmpty()) {
        trace_.Require(!mustNotifyEnd_ || !connectionObservers_.Next(disconnectedRound_),
                       "not every observer was notified of the end");
        mustNotifyEnd_ = false;
    }
}

void Model::ConnectionObserverAdded(std::size_t observer, HRESULT result) {
    FinishConnectionRounds();
    hadNoObserver_ |= (MustBeConnected() || MayFailToConnect()) && connectionObservers_.IsEmpty();
    CheckListed(connectionObservers_, observer, result, true);
}

void Model::ConnectionObserverRemoved(std::size_t observer, HRESULT result) {
    FinishConnectionRounds();
    CheckListed(connectionObservers_, observer, result, false);
}

void Model::PropertyObserverAdded(std::size_t observer, _MorquilPropertySetId set, HRESULT result) {
    FinishRoundsOf(set);
    CheckListed(propertyObservers_[set], observer, result, true);
}

void Model::PropertyObserverRemoved(std::size_t observer, _MorquilPropertySetId set, HRESULT result) {
    FinishRoundsOf(set);
    CheckListed(propertyObservers_[set], observer, result, false);
}

/// Outside any callback a list changes only when the current round of calls is over.
void Model::FinishRoundsOf(_MorquilPropertySetId set) {
    if (!IsInCallback() && !propertyRounds_.empty() && propertyRounds_.front().set == set &&
        propertyRounds_.front().round.IsOn()) {
        RequireOver(propertyRounds_.front());
        propertyRounds_.pop_front();
    }
}

void Model::RequireOver(PropertyRound& round) {
    if (!round.round.IsOn()) {
        round.round.Begin();
    }
    if (const auto next = propertyObservers_[round.set].Next(round.round); next && isForeseen_) {
        trace_.Fail(Name(*next) + " was not notified of " + Testing::FourCharacters(round.set));
    }
}

void Model::Read(const std::string& header, const std::string& key, const std::optional<std::string>& value) {
    const std::optional<std::string> expected = mirror_.Value(header, key);
    const bool isCleared = ended_ && !value;
    Foresee(value == expected || isCleared || mirror_.MayStillBe(header, key, value),
            key + " reads " + value.value_or("nothing") + ", not " + expected.value_or("nothing"));
}

/// A round is over when its last call returns.
void Model::Return(ExpectedList::Round& round, const ExpectedList& list) {
    --Calls();
    if (!list.Next(round)) {
        round.Cancel();
    }
}

void Model::ChangedReturns(_MorquilPropertySetId set) {
    ExpectedList::Round over;
    PropertyRound* const front = propertyRounds_.empty() ? nullptr : &propertyRounds_.front();
    const bool isOfThis = front != nullptr && front->set == set && front->round.IsOn();
    Return(isOfThis ? front->round : over, propertyObservers_[set]);
    if (isOfThis && !front->round.IsOn()) {
        propertyRounds_.pop_front();
    }
}

void Model::OnConnected(std::size_t observer) {
    ++Calls();
    trace_.Note(Name(observer) + " is notified: connected");
    if (!connected_) {
        trace_.Require(!ended_, "connected after the end");
        Foresee(MustBeConnected(), "connected although it is not");
        connected_ = true;
        connectedRound_.Begin();
    }
    trace_.Require(!silent_ && connectionObservers_.Next(connectedRound_) == observer,
                   "connected goes to the wrong observer");
    connectionObservers_.Called(connectedRound_);
}

void Model::OnDisconnected(std::size_t observer, _MorquilConnectToFailure reason) {
    ++Calls();
    trace_.Note(Name(observer) + " is notified: disconnected " + Testing::FourCharacters(reason));
    if (!ended_) {
        Foresee(MayFailToConnect(), "disconnected although nothing has ended");
        End(true);
    }
    trace_.Require(mayNotifyEnd_ && !silent_, "notified after the end");
    if (!std::exchange(endIsNotified_, true)) {
        trace_.Require(!connectionObservers_.Next(connectedRound_), "disconnected overtakes connected");
        disconnectedRound_.Begin();
    }
    trace_.Require(connectionObservers_.Next(disconnectedRound_) == observer, "the end goes to the wrong observer");
    Foresee(reason == mirror_.Reason(), "the end has the wrong reason");
    connectionObservers_.Called(disconnectedRound_);
}

void Model::OnChanged(std::size_t observer, _MorquilPropertySetId set) {
    ++Calls();
    trace_.Note(Name(observer) + " is notified: " + Testing::FourCharacters(set));
    trace_.Require(!silent_ && !ended_, "a change is notified after the end");
    if (!isForeseen_) {
        return;
    }
    while (!propertyRounds_.empty()) {
        PropertyRound& round = propertyRounds_.front();
        if (!round.round.IsOn()) {
            round.round.Begin();
        }
        if (propertyObservers_[round.set].Next(round.round)) {
            break;
        }
        propertyRounds_.pop_front();
    }
    if (propertyRounds_.empty() || propertyRounds_.front().set != set ||
        propertyObservers_[set].Next(propertyRounds_.front().round) != observer) {
        trace_.Fail(Name(observer) + " is notified of " + Testing::FourCharacters(set) + " for nothing or out of turn");
        return;
    }
    propertyObservers_[set].Called(propertyRounds_.front().round);
}

bool Model::MustBeConnected() const {
    return open_ && mirror_.IsComplete() && mirror_.Reason() == morquilConnectToFailureNoResponse;
}

bool Model::MayFailToConnect() const {
    const bool isLate = connectTime_ != never && Scheduler::Instance().Now() - connectTime_ >= initialStateLimit;
    return !connected_ && (openFailed_ || isLate || mirror_.Reason() != morquilConnectToFailureNoResponse);
}

/// The attempt to connect is over. What had no observer has happened all the same.
void Model::Conclude() {
    if (ended_ || connected_) {
        return;
    }
    Foresee(hadNoObserver_ || connectionObservers_.IsEmpty(), "no observer was notified how the attempt ended");
    // A device that has reported its lock last of all may have been too late.
    if (open_ && (mirror_.IsComplete() || !isForeseen_)) {
        connected_ = true;
    } else {
        Foresee(MayFailToConnect(), "the attempt ended for nothing");
        End(false);
    }
}

void Model::CheckQuiet(bool attemptIsOver, bool deviceReads) {
    for (PropertyRound& round : propertyRounds_) {
        RequireOver(round);
    }
    propertyRounds_.clear();
    if (connectTime_ != never && attemptIsOver) {
        Conclude();
    }
    Foresee(ended_ || connected_ || !MustBeConnected(), "the attempt does not end");
    FinishConnectionRounds();
    trace_.Require(!mustNotifyEnd_, "no observer was notified of the end");
    silent_ |= ended_ && attemptIsOver;
    trace_.Require(!ended_ || !open_, "the connection does not end");
    trace_.Require(!ended_ || attemptIsOver, "the attempt to connect does not end");
    Foresee(!endIsDue_ || ended_, "silence does not end the connection");
    if (ended_) {
        mirror_.Clear();
    } else if (open_ && deviceReads) {
        Foresee(queue_.InFlight() || !queue_.Next(), "a block is not sent");
    }
}

void Model::CheckConnectResult(HRESULT result, _MorquilConnectToFailure reason, Time took) {
    const bool isUsable = mirror_.Reason() == morquilConnectToFailureNoResponse;
    Foresee(reason == mirror_.Reason(), "the attempt has the wrong reason");
    if (SUCCEEDED(result)) {
        Foresee(isUsable && !openFailed_ && (MustBeConnected() || ended_), "connected without a connection");
    } else {
        Foresee(!isUsable || openFailed_ || took >= initialStateLimit, "failed without a failure");
    }
    Conclude();
}

void Model::Received(const DeviceMessage& message) {
    trace_.Note("received " + message.bytes);
    if (ended_) {
        return;
    }
    if (message.kind == DeviceMessage::Kind::Acknowledge) {
        queue_.Acknowledge(message.count);
    }
    if (message.kind != DeviceMessage::Kind::Block) {
        return;
    }
    const ExpectedMirror::Effect effect = mirror_.Take(message.header, message.lines);
    for (const std::string& request : effect.requests) {
        queue_.Add(request, {}, false);
    }
    const bool isEcho = HasEchoes(message.header) && queue_.TakeEcho(TextOf(message.header, message.lines));
    if (!isEcho || message.header == "VIDEO OUTPUT") {
        for (const _MorquilPropertySetId set : effect.changed) {
            propertyRounds_.push_back({set, {}});
        }
    }
}

void Model::ReadyForMore() {
    for (PropertyRound& round : propertyRounds_) {
        RequireOver(round);
    }
    propertyRounds_.clear();
    queue_.DropAcknowledgements();
    mirror_.Settle();
    Foresee(!pingIsDue_ || ended_, "silence without a ping");
    Foresee(!endIsDue_, "silence does not end the connection");
}

void Model::Opened() {
    trace_.Note("opened");
    open_ = true;
}

void Model::OpenFailed() {
    trace_.Note("not opened");
    openFailed_ = true;
}

void Model::Sent(const std::string& block) {
    trace_.Note("sent " + block);
    trace_.Require(!closed_, "sent after the end");
    if (block == "PING\n\n") {
        trace_.Require(pingIsDue_, "a ping without silence");
        pingIsDue_ = false;
    } else {
        Foresee(!queue_.InFlight(), "two blocks in flight");
        Foresee(queue_.Next() == block, "sent in place of " + queue_.Next().value_or("nothing") + ": " + block);
        if (queue_.Next()) {
            queue_.TakeNext();
        }
    }
    onSent_(block);
}

void Model::TimedOut(Time silence) {
    trace_.Note("silence");
    trace_.Require(silence == silenceLimit, "a silence of " + std::to_string(silence) + " ms");
    (queue_.InFlight() ? endIsDue_ : pingIsDue_) = true;
}

void Model::Closed() {
    trace_.Note("closed");
    if (!ended_) {
        // Whether a host that released while connecting is notified depends on which came first.
        End(!released_ || (isForeseen_ && !connected_ && !MustBeConnected()));
        mayNotifyEnd_ = true;
    }
    open_ = false;
    closed_ = true;
    endIsDue_ = false;
}

void Model::Destroyed() {
    trace_.Note("destroyed");
    destroyed_ = true;
}

}  // namespace Morquil::Testing::Worlds
