#include "gateway/fleet/fleet_device.h"

#include <algorithm>
#include <utility>

namespace Morquil::Gateway {
namespace {

std::uint64_t FirstRevision() {
    using namespace std::chrono;
    return static_cast<std::uint64_t>(duration_cast<milliseconds>(WallClock::now().time_since_epoch()).count());
}

Verdict VerdictOf(const morquil::Outcome& outcome, const Property& property, const std::optional<Value>& now,
                  const Value& wanted) {
    switch (outcome.result) {
        case morquil::Result::Applied:
            return Verdict::Confirmed;
        case morquil::Result::Adjusted: {
            // Another value of the same block may be the adjusted one.
            const bool isAsWanted =
                property.IsReadable() && Properties::Confirms(now, wanted) != Properties::Confirmation::No;
            return isAsWanted ? Verdict::Confirmed : Verdict::Adjusted;
        }
        case morquil::Result::Refused:
            return Verdict::Refused;
        case morquil::Result::NotSent:
            return Verdict::NotSent;
        case morquil::Result::TimedOut:
            return Verdict::Unconfirmed;
        case morquil::Result::Lost:
            break;
    }
    return Verdict::Lost;
}

}  // namespace

/// A change that the device has not settled yet. After its limit `done` is empty, and it only says whose change it is.
struct FleetDevice::Pending {
    Pending(boost::asio::io_context& context, std::uint64_t ownNumber, const Property& ownProperty, Value ownValue,
            Who ownWho, OnSettled ownDone)
        : number(ownNumber),
          property(&ownProperty),
          value(std::move(ownValue)),
          who(std::move(ownWho)),
          done(std::move(ownDone)),
          limit(context) {}

    std::uint64_t number;
    const Property* property;
    Value value;
    Who who;
    std::optional<Value> before = {};
    OnSettled done;
    Alarm limit;
    morquil::Subscription receipt = {};
};

FleetDevice::FleetDevice(boost::asio::io_context& context, BlockingWork& worker, DeviceEntry entry,
                         FleetListener& listener)
    : context_(context),
      entry_(std::move(entry)),
      listener_(listener),
      revision_(FirstRevision()),
      self_(std::make_shared<FleetDevice*>(this)),
      link_(context, worker, entry_.name, *this) {
    if (entry_.enabled) {
        link_.Start(entry_.address);
    }
}

// Every change that is waited for gets an answer.
FleetDevice::~FleetDevice() {
    OnLost();
}

void FleetDevice::Change(DeviceEntry entry) {
    const bool isMoved = entry.address != entry_.address || entry.enabled != entry_.enabled;
    entry_ = std::move(entry);
    ++revision_;
    link_.Rename(entry_.name);
    if (!isMoved) {
        return;
    }
    link_.Stop();
    mirror_ = Mirror();
    lastReport_.reset();
    latestChange_.reset();
    if (entry_.enabled) {
        link_.Start(entry_.address);
    }
}

const std::optional<WallTime>& FleetDevice::LastReport() const {
    if (const auto silence = link_.Silence()) {
        lastReport_ = WallClock::now() - *silence;
    }
    return lastReport_;
}

Properties::Offer FleetDevice::Offered(const Property& property) const {
    const morquil::Device* const device = link_.Device();
    return device != nullptr ? Properties::Offered(property, *device) : Properties::Offer();
}

void FleetDevice::Tick() {
    LastReport();
    link_.CheckSilence();
}

void FleetDevice::Set(const Property& property, const Value& value, Who who, std::chrono::milliseconds limit,
                      OnSettled done) {
    const morquil::Device* const device = link_.Device();
    if (device == nullptr || pending_.size() >= mostChangesInProgress) {
        done({device == nullptr ? Verdict::Lost : Verdict::TooMany});
        return;
    }
    const std::uint64_t number = ++lastNumber_;
    Pending& pending = pending_.emplace_back(context_, number, property, value, std::move(who), std::move(done));
    pending.before = mirror_.At(PositionOf(property));
    pending.limit.In(limit, [this, number] { OnLimit(number); });
    try {
        Send(pending, *device);
    } catch (const morquil::Error&) {
        // The library refuses the value itself, or cannot send: nothing was queued.
        const OnSettled refused = std::exchange(pending.done, nullptr);
        pending_.pop_back();
        refused({Verdict::Refused, mirror_.At(PositionOf(property)), mirror_.At(PositionOf(property))});
    }
}

void FleetDevice::Send(Pending& pending, const morquil::Device& device) {
    const std::weak_ptr<FleetDevice*> weak = self_;
    const std::uint64_t number = pending.number;
    pending.receipt = device.ApplyAsync(
        [&] { Properties::Set(*pending.property, device, pending.value); },
        [weak, number](const morquil::Outcome& outcome) {
            if (const std::shared_ptr<FleetDevice*> self = weak.lock()) {
                (*self)->OnOutcome(number, outcome);
            }
        },
        [&context = context_](std::function<void()> event) { boost::asio::post(context, std::move(event)); });
}

FleetDevice::PendingList::iterator FleetDevice::FindPending(std::uint64_t number) {
    return std::find_if(pending_.begin(), pending_.end(),
                        [number](const Pending& pending) { return pending.number == number; });
}

void FleetDevice::OnOutcome(std::uint64_t number, const morquil::Outcome& outcome) {
    const auto found = FindPending(number);
    if (found == pending_.end()) {
        return;
    }
    const Position position = PositionOf(*found->property);
    Settled settled{VerdictOf(outcome, *found->property, mirror_.At(position), found->value), found->before,
                    mirror_.At(position)};
    const OnSettled done = std::exchange(found->done, nullptr);
    pending_.erase(found);
    if (done) {
        done(std::move(settled));
    }
}

void FleetDevice::OnLimit(std::uint64_t number) {
    const auto found = FindPending(number);
    if (found != pending_.end() && found->done) {
        Settled settled{Verdict::Unconfirmed, found->before, mirror_.At(PositionOf(*found->property))};
        std::exchange(found->done, nullptr)(std::move(settled));
    }
}

void FleetDevice::OnConnected() {}

void FleetDevice::OnLost() {
    PendingList pending;
    pending.swap(pending_);
    for (Pending& lost : pending) {
        if (lost.done) {
            std::exchange(lost.done, nullptr)({Verdict::Lost, lost.before});
        }
    }
}

void FleetDevice::OnLinkChanged() {
    ++revision_;
    listener_.OnLink(*this);
}

LastChange FleetDevice::Attribute(const Reading& reading, const std::optional<Value>& known) const {
    const Property& property = PropertyAt(reading.position);
    for (const Pending& pending : pending_) {
        if (pending.property == &property && reading.value &&
            Properties::Confirms(reading.value, pending.value) != Properties::Confirmation::No) {
            return {reading.time, Origin::Gateway, pending.who};
        }
    }
    if (reading.isEcho) {
        return {reading.time, Origin::Gateway};
    }
    return {reading.time, reading.isFirst && !known ? Origin::Initial : Origin::Elsewhere};
}

void FleetDevice::OnReports(BoxContent content) {
    std::vector<ValueChange> changes;
    for (Reading& reading : content.readings) {
        LastChange last = Attribute(reading, mirror_.At(reading.position));
        if (auto change = mirror_.Store(reading.position, std::move(reading.value), std::move(last))) {
            changes.push_back(*std::move(change));
        }
    }
    if (!changes.empty()) {
        ++revision_;
        if (changes.back().last.origin != Origin::Initial) {
            latestChange_ = changes.back();
        }
        listener_.OnChanges(*this, changes);
    }
    NotifyOffers(content.offers, changes);
}

void FleetDevice::NotifyOffers(const std::vector<morquil::PropertySet>& sets, std::span<const ValueChange> changes) {
    const auto isChanged = [&](std::string_view name) {
        return std::any_of(changes.begin(), changes.end(),
                           [&](const ValueChange& change) { return change.property->name == name; });
    };
    std::vector<const Property*> properties;
    for (const Property& property : Properties::AllProperties()) {
        const bool isReported = std::find(sets.begin(), sets.end(), property.set) != sets.end();
        if (property.offer != nullptr &&
            (isReported || std::any_of(property.offerFollows.begin(), property.offerFollows.end(), isChanged))) {
            properties.push_back(&property);
        }
    }
    if (!properties.empty()) {
        listener_.OnOffers(*this, properties);
    }
}

}  // namespace Morquil::Gateway
