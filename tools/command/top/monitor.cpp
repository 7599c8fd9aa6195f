#include "command/top/monitor.h"

#include <utility>

#include "command/commands/link.h"
#include "command/output/rendering.h"
#include "command/output/status.h"

namespace Morquil::Command {
namespace {

std::string ShownValue(const char* name, const morquil::Device& device) {
    const Property& property = FindProperty(name);
    return ValueAsText(property, Read(property, device));
}

bool IsTrue(const char* name, const morquil::Device& device) {
    return Read(FindProperty(name), device) == Value(true);
}
bool IsFalse(const char* name, const morquil::Device& device) {
    return Read(FindProperty(name), device) == Value(false);
}

std::string LocksOf(const morquil::Device& device) {
    const bool hasPanelLock = IsTrue("device.panel-lock", device);
    const bool hasRemoteLock = IsTrue("device.remote-lock", device);
    if (hasPanelLock && hasRemoteLock) {
        return "both";
    }
    return hasPanelLock ? "panel" : hasRemoteLock ? "remote" : "none";
}

}  // namespace

Monitor::Monitor(std::string address, const Selection& selection, std::chrono::milliseconds longestSilence)
    : longestSilence_(longestSilence),
      view_{.address = std::move(address), .since = WallClock::now()},
      watched_(selection),
      connection_(view_.address, watched_.SharedFeed(), FailedAttempts::All) {}

void Monitor::Update(std::vector<Happening>& happenings) {
    const auto add = [&happenings](std::optional<Happening> happening) {
        if (happening) {
            happenings.push_back(std::move(*happening));
        }
    };
    for (News news = watched_.Feed().Take(); news.event || !news.changes.empty(); news = watched_.Feed().Take()) {
        for (const ValueChange& change : news.changes) {
            add(AsHappening(change));
        }
        if (news.event) {
            add(Handle(*news.event));
        }
    }
    add(TakeFinding());
    wasSilent_ = connection_.DropIfSilent(longestSilence_) || wasSilent_;
    ReadState();
}

Happening Monitor::AsHappening(const ValueChange& change) const {
    const Property& property = *change.property;
    Json json = ChangeAsJson(change);
    json["address"] = view_.address;
    return {change.time, view_.address,
            property.name + "  " + ValueAsText(property, change.before) + " -> " + ValueAsText(property, change.now),
            Style::Plain, std::move(json)};
}

std::optional<Happening> Monitor::Handle(const Event& event) {
    switch (event.kind) {
        case EventKind::Connected:
            return Connected(event);
        case EventKind::Lost:
            return Lost(event);
        case EventKind::Failed:
            return Failed(event);
    }
    return std::nullopt;
}

Happening Monitor::Connected(const Event& event) {
    watched_.Begin(*event.device);
    view_.link = LinkState::Connected;
    view_.since = event.time;
    view_.cause.clear();
    ReadState();
    return LinkHappening("connected", "connected: " + SummaryOf(view_), event.time);
}

Happening Monitor::Lost(const Event& event) {
    view_.link = LinkState::Lost;
    view_.since = event.time;
    view_.cause = std::exchange(wasSilent_, false) ? SilentText(longestSilence_) : "the connection was lost";
    view_.status.clear();
    return LinkHappening("lost", view_.cause, event.time);
}

// The library's reason says it all, or an inquiry will.
std::optional<Happening> Monitor::Failed(const Event& event) {
    if (const auto known = Diagnosis::Explain(event.reason)) {
        return NotConnected(known->sentence, event.time);
    }
    inquiry_ = std::make_unique<Diagnosis::Inquiry>(view_.address, Diagnosis::usualLimit,
                                                    [answer = answer_](const Diagnosis::Finding& finding) {
                                                        const std::lock_guard lock(answer->mutex);
                                                        answer->finding = finding;
                                                    });
    return std::nullopt;
}

std::optional<Happening> Monitor::TakeFinding() {
    const std::lock_guard lock(answer_->mutex);
    const std::optional<Diagnosis::Finding> finding = std::exchange(answer_->finding, std::nullopt);
    const bool isOutdated = view_.link == LinkState::Connected;
    return finding && !isOutdated ? NotConnected(finding->sentence, WallClock::now()) : std::nullopt;
}

// Every attempt fails; only another cause is news.
std::optional<Happening> Monitor::NotConnected(const std::string& cause, WallClock::time_point time) {
    if (view_.link == LinkState::Unreachable && view_.cause == cause) {
        return std::nullopt;
    }
    view_.link = LinkState::Unreachable;
    view_.cause = cause;
    return LinkHappening("unreachable", cause, time);
}

Happening Monitor::LinkHappening(const char* event, const std::string& text, WallClock::time_point time) const {
    return {time,
            view_.address,
            text,
            view_.link == LinkState::Connected ? Style::Good : Style::Bad,
            {{"time", LocalTime(time)}, {"address", view_.address}, {"event", event}, {"reason", text}}};
}

void Monitor::ReadState() {
    const std::optional<morquil::Device> device = connection_.Current();
    if (!device || view_.link != LinkState::Connected) {
        return;
    }
    view_.hasSignal = !IsFalse("input.signal-present", *device);
    view_.name = ShownValue("network.name", *device);
    view_.input = ShownValue("input.video-mode", *device) + (view_.hasSignal ? "" : " no signal");
    view_.output = ShownValue("output.video-mode", *device);
    view_.reference = IsTrue("reference.signal-locked", *device)    ? "locked"
                      : IsFalse("reference.signal-locked", *device) ? "unlocked"
                                                                    : "-";
    view_.locks = LocksOf(*device);
    view_.status = StatusOf(*device);
}

}  // namespace Morquil::Command
