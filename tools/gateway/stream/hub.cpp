#include "gateway/stream/hub.h"

#include <algorithm>
#include <charconv>
#include <map>
#include <random>
#include <utility>

#include "gateway/fleet/fleet.h"

namespace Morquil::Gateway {
namespace {

using namespace std::chrono_literals;

constexpr auto flushInterval = 20ms;
constexpr auto heartbeatInterval = 5s;
constexpr std::size_t mostKept = 8'192;
constexpr std::size_t mostKeptBytes = 8 * 1'024 * 1'024;

std::string NewBoot() {
    std::random_device random;
    char text[9];
    std::snprintf(text, sizeof text, "%08x", random());
    return text;
}

SharedText MakeText(std::string_view name, Json body, std::string_view id) {
    Json whole = {{"event", name}};
    whole.update(body);
    return std::make_shared<const EventText>(name, whole, id);
}

}  // namespace

Hub::Hub(boost::asio::io_context& context) : context_(context), boot_(NewBoot()), flush_(context), heartbeat_(context) {
    BeatLater();
}

void Hub::Add(const std::shared_ptr<Subscriber>& subscriber, std::string_view lastId) {
    if (lastId.empty() || !Resume(*subscriber, lastId)) {
        for (const auto& [name, device] : fleet_->All()) {
            if (subscriber->Sees().Shows(name)) {
                subscriber->Owe(name);
            }
        }
        if (!lastId.empty()) {
            subscriber->NoteGap(0);
        }
    }
    subscribers_.insert(subscriber);
    subscriber->Wake();
}

bool Hub::Resume(Subscriber& subscriber, std::string_view lastId) const {
    const std::string beginning = boot_ + "-";
    if (!lastId.starts_with(beginning)) {
        return false;
    }
    lastId.remove_prefix(beginning.size());
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(lastId.data(), lastId.data() + lastId.size(), number);
    const std::uint64_t firstKept = kept_.empty() ? lastNumber_ + 1 : kept_.front().event.number;
    if (error != std::errc() || end != lastId.data() + lastId.size() || number > lastNumber_ ||
        number + 1 < firstKept) {
        return false;
    }
    for (const Kept& kept : kept_) {
        if (kept.event.number > number) {
            if (SharedText text = TextFor(kept.event, subscriber.Sees())) {
                subscriber.Push(kept.event, std::move(text));
            }
        }
    }
    return true;
}

std::vector<StreamPiece> Hub::TakeFor(Subscriber& subscriber) {
    return subscriber.Take(
        [&](const std::string& device, bool isLast) { return SnapshotFor(subscriber.Sees(), device, isLast); },
        [this](std::size_t missed) {
            ++gaps_;
            return MakeText("gap", {{"missed", missed}}, {});
        });
}

SharedText Hub::SnapshotFor(const View& view, const std::string& device, bool isLast) const {
    const FleetDevice* const found = fleet_->Find(device);
    if (found == nullptr) {
        return nullptr;
    }
    const PropertyFilter filter = [&](Position position) { return view.Shows(device, position); };
    return MakeText("snapshot",
                    {{"device", device},
                     {"revision", found->Revision()},
                     {"link", LinkJson(*found)},
                     {"summary", SummaryJson(*found)},
                     {"alarms", AlarmsJson(*found)},
                     {"live", found->IsLive()},
                     {"values", ValuesJson(*found, view.IsEverything() ? PropertyFilter() : filter)}},
                    isLast ? IdOf(lastNumber_) : std::string());
}

SharedText Hub::TextFor(const Event& event, const View& view) const {
    if (!event.device.empty() && !view.Shows(event.device)) {
        return nullptr;
    }
    Json body = event.body;
    const PropertyFilter filter = [&](Position position) { return view.Shows(event.device, position); };
    if (!event.changes.empty()) {
        body["changes"] = ChangesJson(event.changes, view.IsEverything() ? PropertyFilter() : filter);
    }
    for (const Property* const property : event.offers) {
        if (filter(PositionOf(*property))) {
            body["properties"].push_back(property->name);
        }
    }
    const bool isEmptied =
        (!event.changes.empty() && body["changes"].empty()) || (!event.offers.empty() && !body.contains("properties"));
    if (isEmptied) {
        return nullptr;
    }
    return MakeText(event.name, std::move(body), IdOf(event.number));
}

void Hub::End(std::string_view who, std::string_view why) {
    const SharedText text = MakeText("end", {{"why", why}}, {});
    // Waking a client may remove it.
    const std::set<std::shared_ptr<Subscriber>> subscribers = subscribers_;
    for (const std::shared_ptr<Subscriber>& subscriber : subscribers) {
        if (who.empty() || subscriber->WhoReads() == who) {
            subscriber->End(text);
            subscriber->Wake();
        }
    }
}

std::set<std::string> Hub::Readers() const {
    std::set<std::string> readers;
    for (const std::shared_ptr<Subscriber>& subscriber : subscribers_) {
        readers.insert(subscriber->WhoReads());
    }
    return readers;
}

std::size_t Hub::LongestQueue() const {
    std::size_t longest = 0;
    for (const std::shared_ptr<Subscriber>& subscriber : subscribers_) {
        longest = std::max(longest, subscriber->QueuedBytes());
    }
    return longest;
}

std::size_t Hub::QueuedBytes() const {
    std::size_t bytes = 0;
    for (const std::shared_ptr<Subscriber>& subscriber : subscribers_) {
        bytes += subscriber->QueuedBytes();
    }
    return bytes;
}

void Hub::OnChanges(const FleetDevice& device, std::span<const ValueChange> changes) {
    // An event names each property once.
    std::size_t begin = 0;
    std::set<const Property*> named;
    for (std::size_t at = 0; at < changes.size(); ++at) {
        if (!named.insert(changes[at].property).second) {
            PublishChanges(device, changes.subspan(begin, at - begin));
            begin = at;
            named = {changes[at].property};
        }
    }
    PublishChanges(device, changes.subspan(begin));
}

void Hub::PublishChanges(const FleetDevice& device, std::span<const ValueChange> changes) {
    const std::string& name = device.Entry().name;
    Publish({0,
             "change",
             name,
             {{"device", name}, {"revision", device.Revision()}, {"time", FormatTime(changes.back().last.time)}},
             {changes.begin(), changes.end()},
             {}});
    if (std::any_of(changes.begin(), changes.end(),
                    [](const ValueChange& change) { return IsInSummary(*change.property); })) {
        OnLink(device);
    }
}

void Hub::OnLink(const FleetDevice& device) {
    const std::string& name = device.Entry().name;
    Publish({0,
             "link",
             name,
             {{"device", name},
              {"revision", device.Revision()},
              {"link", LinkJson(device)},
              {"summary", SummaryJson(device)},
              {"alarms", AlarmsJson(device)}},
             {},
             {}});
}

void Hub::OnOffers(const FleetDevice& device, std::span<const Property* const> properties) {
    const std::string& name = device.Entry().name;
    Publish({0, "offers", name, {{"device", name}}, {}, {properties.begin(), properties.end()}});
}

void Hub::OnEdited() {
    std::set<std::string> names;
    for (const auto& [name, device] : fleet_->All()) {
        names.insert(name);
        for (const std::shared_ptr<Subscriber>& subscriber : subscribers_) {
            if (knownDevices_.count(name) == 0 && subscriber->Sees().Shows(name)) {
                subscriber->Owe(name);
            }
        }
    }
    knownDevices_ = std::move(names);
    Publish("devices", {{"revision", fleet_->Revision()}});
}

void Hub::Publish(std::string name, Json body) {
    Publish({0, std::move(name), {}, std::move(body), {}, {}});
}

void Hub::Publish(Event event) {
    event.number = ++lastNumber_;
    const SharedText whole = TextFor(event, View());
    for (const std::shared_ptr<Subscriber>& subscriber : subscribers_) {
        if (subscriber->Owes(event.device)) {
            continue;
        }
        if (SharedText text = subscriber->Sees().IsEverything() ? whole : TextFor(event, subscriber->Sees())) {
            subscriber->Push(event, std::move(text));
        }
    }
    Keep(std::move(event), whole->WithId().size());
    FlushSoon();
}

void Hub::Keep(Event event, std::size_t size) {
    keptBytes_ += size;
    kept_.push_back({std::move(event), size});
    while (kept_.size() > mostKept || keptBytes_ > mostKeptBytes) {
        keptBytes_ -= kept_.front().size;
        kept_.pop_front();
    }
}

void Hub::FlushSoon() {
    if (std::exchange(isFlushing_, true)) {
        return;
    }
    const auto sinceLast = std::chrono::steady_clock::now() - lastFlush_;
    flush_.In(sinceLast >= flushInterval ? 0ms : flushInterval - sinceLast, [this] { Flush(); });
}

void Hub::Flush() {
    isFlushing_ = false;
    lastFlush_ = std::chrono::steady_clock::now();
    // Waking a client may remove it.
    const std::vector<std::shared_ptr<Subscriber>> subscribers(subscribers_.begin(), subscribers_.end());
    for (const std::shared_ptr<Subscriber>& subscriber : subscribers) {
        subscriber->Wake();
    }
}

void Hub::BeatLater() {
    heartbeat_.In(heartbeatInterval, [this] {
        const SharedText text = MakeText("heartbeat", {{"time", FormatTime(WallClock::now())}}, {});
        for (const std::shared_ptr<Subscriber>& subscriber : subscribers_) {
            subscriber->PushHeartbeat(text);
        }
        FlushSoon();
        BeatLater();
    });
}

}  // namespace Morquil::Gateway
