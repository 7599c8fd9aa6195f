// watch.
#include <map>
#include <set>

#include "command/commands.h"
#include "command/event_queue.h"
#include "command/local_time.h"
#include "command/property.h"
#include "command/rendering.h"

namespace Morquil::Command {
namespace {

/// What the watched properties were when they were last looked at, and who is told when they change.
class Watch {
public:
    Watch(const Context& context, Selection selection) : context_(context), selection_(std::move(selection)) {}

    /// Subscribes to a device, and takes its values as the old ones. When there have been some before, tells what has
    /// changed since.
    void Begin(const morquil::Device& device, const std::shared_ptr<EventQueue>& events) {
        subscriptions_.clear();
        device_ = device;
        std::set<morquil::PropertySet> sets;
        for (const Property* const property : selection_) {
            if (sets.insert(property->set).second) {
                subscriptions_.push_back(device.OnChange(property->set, [events](morquil::PropertySet set) {
                    events->Add({EventKind::Changed, set});
                }));
            }
        }
        Compare(std::nullopt, WallClock::now(), !values_.empty());
    }

    /// Tells what has changed in one set, or in all of them.
    void Compare(std::optional<morquil::PropertySet> set, WallClock::time_point time, bool isTold = true) {
        for (const Property* const property : selection_) {
            if (!set || property->set == *set) {
                Look(*property, time, isTold);
            }
        }
    }

    void TellEvent(const char* event, const std::string& text, WallClock::time_point time) const {
        if (context_.options.isJson) {
            PrintJsonLine(context_.terminal, {{"time", LocalTime(time)}, {"event", event}, {"reason", text}});
        } else {
            PrintLine(context_.terminal, {Cell(LocalTime(time), Style::Faint), Cell(text, Style::Bad)});
        }
    }

    void End() { subscriptions_.clear(); }
    std::size_t Count() const { return selection_.size(); }

private:
    void Look(const Property& property, WallClock::time_point time, bool isTold) {
        const std::optional<Value> present = ReadValue(property, *device_);
        std::optional<Value>& before = values_[&property];
        if (isTold && present != before) {
            TellChange(property, before, present, time);
        }
        before = present;
    }

    void TellChange(const Property& property, const std::optional<Value>& before, const std::optional<Value>& present,
                    WallClock::time_point time) const {
        if (context_.options.isJson) {
            PrintJsonLine(context_.terminal, {{"time", LocalTime(time)},
                                              {"name", property.name},
                                              {"old", ValueAsJson(property, before)},
                                              {"new", ValueAsJson(property, present)}});
        } else {
            PrintLine(context_.terminal, {Cell(LocalTime(time), Style::Faint), property.name,
                                          ValueAsText(property, before) + " -> " + ValueAsText(property, present)});
        }
    }

    const Context& context_;
    const Selection selection_;
    std::optional<morquil::Device> device_;
    std::map<const Property*, std::optional<Value>> values_;
    std::vector<morquil::Subscription> subscriptions_;
};

void TellBeginning(const Context& context, const Watch& watch) {
    const std::string count = std::to_string(watch.Count()) + (watch.Count() == 1 ? " property" : " properties");
    Tell(context.terminal, "watching " + count + " of " + context.options.address);
}

// Until the connection is lost or the user has seen enough.
void WatchOneConnection(const Context& context, Watch& watch) {
    const auto events = std::make_shared<EventQueue>();
    Link link(context.options.address, context.deadline);
    link.BecomeOpenEnded();
    const morquil::Subscription ended = link.Device().OnConnection(
        {.disconnected = [events](morquil::ConnectFailure) { events->Add({EventKind::Lost}); }});
    watch.Begin(link.Device(), events);
    TellBeginning(context, watch);
    while (!context.isInterrupted && !link.IsLost()) {
        if (const std::optional<Event> event = events->Next(); event && event->kind == EventKind::Changed) {
            watch.Compare(event->set, event->time);
        }
    }
    watch.End();
    link.CheckIsThere();
}

class SessionEnd {
public:
    explicit SessionEnd(std::shared_ptr<morquil::Session> session) : session_(std::move(session)) {}
    /// An attempt to connect that is on its way is left to the end of the process.
    ~SessionEnd() {
        const bool isConnected = session_->Current().has_value();
        session_->Stop();
        if (!isConnected) {
            LeaveToTheProcess(session_);
        }
    }
    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;

private:
    std::shared_ptr<morquil::Session> session_;
};

std::shared_ptr<morquil::Session> OpenSession(const std::string& address, const std::shared_ptr<EventQueue>& events) {
    return std::make_shared<morquil::Session>(
        address,
        morquil::SessionHandlers{
            .connected =
                [events](const morquil::Device& device) {
                    events->Add(
                        {.kind = EventKind::Connected, .device = std::make_shared<const morquil::Device>(device)});
                },
            .lost =
                [events](morquil::ConnectFailure reason) { events->Add({.kind = EventKind::Lost, .reason = reason}); },
            .attemptFailed =
                [events](morquil::ConnectFailure reason, std::chrono::milliseconds) {
                    events->Add({.kind = EventKind::Failed, .reason = reason});
                }});
}

/// What the events of a session mean for a watch. Before the device has been there once, a failure is final.
class SessionWatch {
public:
    SessionWatch(const Context& context, Watch& watch, std::shared_ptr<EventQueue> events)
        : context_(context), watch_(watch), events_(std::move(events)) {}

    void Handle(const Event& event) {
        switch (event.kind) {
            case EventKind::Changed:
                watch_.Compare(event.set, event.time);
                break;
            case EventKind::Connected:
                Connected(event);
                break;
            case EventKind::Lost:
                watch_.TellEvent("lost", context_.options.address + ": the connection was lost", event.time);
                break;
            case EventKind::Failed:
                if (!wasConnected_) {
                    throw Failure(ExitCode::Unreachable, context_.options.address + ": " + ToText(event.reason));
                }
                break;
        }
    }

    void CheckTime() const {
        if (!wasConnected_ && context_.deadline.IsOver()) {
            throw Failure(ExitCode::TimedOut,
                          context_.options.address + ": not connected within " + context_.deadline.Text());
        }
    }

private:
    void Connected(const Event& event) {
        if (wasConnected_) {
            watch_.TellEvent("connected", context_.options.address + ": connected again", event.time);
        }
        watch_.Begin(*event.device, events_);
        if (!wasConnected_) {
            TellBeginning(context_, watch_);
        }
        wasConnected_ = true;
    }

    const Context& context_;
    Watch& watch_;
    const std::shared_ptr<EventQueue> events_;
    bool wasConnected_ = false;
};

void WatchSession(const Context& context, Watch& watch) {
    const auto events = std::make_shared<EventQueue>();
    SessionWatch handler(context, watch, events);
    const SessionEnd end(OpenSession(context.options.address, events));
    while (!context.isInterrupted) {
        if (const std::optional<Event> event = events->Next()) {
            handler.Handle(*event);
        }
        handler.CheckTime();
    }
    watch.End();
}

}  // namespace

void WatchChanges(const Context& context) {
    Selection selection = SelectProperties(context.options.words);
    std::erase_if(selection, [](const Property* property) { return !property->IsReadable(); });
    if (selection.empty()) {
        throw UsageFailure(context.options.words.front() + " is a command: it has no value to watch");
    }
    Watch watch(context, std::move(selection));
    context.options.reconnects ? WatchSession(context, watch) : WatchOneConnection(context, watch);
}

}  // namespace Morquil::Command
