// watch.
#include <map>
#include <memory>

#include "command/changes/local_time.h"
#include "command/changes/watch_feed.h"
#include "command/commands/commands.h"
#include "command/output/rendering.h"
#include "command/properties/property.h"

namespace Morquil::Command {
namespace {

/// The watched properties, and the current device.
class Watch {
public:
    Watch(const Context& context, Selection selection) : context_(context), selection_(std::move(selection)) {}

    /// Subscribes to a device and reads its values. A value that differs from the previous device's is a change.
    void Begin(const morquil::Device& device) {
        subscriptions_.clear();
        std::map<morquil::PropertySet, Selection> sets;
        for (const Property* const property : selection_) {
            sets[property->set].push_back(property);
        }
        for (const auto& [set, properties] : sets) {
            const auto look = [feed = feed_, device, watched = properties](morquil::PropertySet) {
                for (const Property* const property : watched) {
                    feed->Look(*property, device);
                }
            };
            subscriptions_.push_back(device.OnChange(set, look));
            look(set);
        }
    }
    void End() { subscriptions_.clear(); }

    WatchFeed& Feed() const { return *feed_; }
    /// The feed that handlers share; they may still run after the watch is destroyed.
    std::shared_ptr<WatchFeed> SharedFeed() const { return feed_; }

    void PrintStart() const {
        const std::size_t count = selection_.size();
        PrintMessage(context_.terminal, "watching " + std::to_string(count) +
                                            (count == 1 ? " property" : " properties") + " of " +
                                            context_.options.address);
    }

    void PrintChanges(const std::vector<ValueChange>& changes) const {
        for (const ValueChange& change : changes) {
            context_.options.isJson ? PrintJsonLine(context_.terminal, ChangeAsJson(change))
                                    : PrintLine(context_.terminal, ChangeAsRow(change));
        }
    }

    void PrintEvent(const char* name, const std::string& text, const Event& event) const {
        if (context_.options.isJson) {
            PrintJsonLine(
                context_.terminal,
                {{"time", LocalTime(event.time)}, {"event", name}, {"reason", text}, {"skipped", event.skipped}});
        } else {
            PrintLine(context_.terminal, {Cell(LocalTime(event.time), Style::Faint), Cell(text, Style::Bad),
                                          SkippedAsCell(event.skipped, "event")});
        }
    }

private:
    const Context& context_;
    const Selection selection_;
    const std::shared_ptr<WatchFeed> feed_ = std::make_shared<WatchFeed>();
    std::vector<morquil::Subscription> subscriptions_;
};

// Runs until the connection is lost or the user stops the watch.
void WatchOneConnection(const Context& context, Watch& watch) {
    Link link(context);
    link.BecomeOpenEnded();
    const morquil::Subscription ended = link.Device().OnConnection(
        {.disconnected = [feed = watch.SharedFeed()](morquil::ConnectFailure) { feed->Add({EventKind::Lost}); }});
    watch.Begin(link.Device());
    watch.PrintStart();
    while (!context.isInterrupted && !link.IsLost()) {
        watch.PrintChanges(watch.Feed().Next().changes);
    }
    watch.End();
    watch.PrintChanges(watch.Feed().Take().changes);
    link.CheckIsThere();
}

class SessionEnd {
public:
    explicit SessionEnd(std::shared_ptr<morquil::Session> session) : session_(std::move(session)) {}
    /// A connection attempt in progress is left running until the process ends.
    ~SessionEnd() {
        const bool isConnected = session_->Current().has_value();
        session_->Stop();
        if (!isConnected) {
            KeepUntilExit(session_);
        }
    }
    SessionEnd(const SessionEnd&) = delete;
    SessionEnd& operator=(const SessionEnd&) = delete;

private:
    std::shared_ptr<morquil::Session> session_;
};

// Failed attempts only count before the first connection.
std::shared_ptr<morquil::Session> OpenSession(const std::string& address, const std::shared_ptr<WatchFeed>& feed) {
    const auto wasConnected = std::make_shared<bool>(false);  // handlers run one at a time
    return std::make_shared<morquil::Session>(
        address,
        morquil::SessionHandlers{
            .connected =
                [feed, wasConnected](const morquil::Device& device) {
                    *wasConnected = true;
                    feed->Add(
                        {.kind = EventKind::Connected, .device = std::make_shared<const morquil::Device>(device)});
                },
            .lost = [feed](morquil::ConnectFailure reason) { feed->Add({.kind = EventKind::Lost, .reason = reason}); },
            .attemptFailed =
                [feed, wasConnected](morquil::ConnectFailure reason, std::chrono::milliseconds) {
                    if (!*wasConnected) {
                        feed->Add({.kind = EventKind::Failed, .reason = reason});
                    }
                }});
}

/// Decides what the events of a session mean for a watch. Until the first connection, a failure is final.
class SessionWatch {
public:
    SessionWatch(const Context& context, Watch& watch) : context_(context), watch_(watch) {}

    void Handle(const Event& event) {
        switch (event.kind) {
            case EventKind::Connected:
                Connected(event);
                break;
            case EventKind::Lost:
                watch_.PrintEvent("lost", context_.options.address + ": the connection was lost", event);
                break;
            case EventKind::Failed:
                throw Failure(ExitCode::Unreachable, context_.options.address + ": " + ToText(event.reason));
        }
    }

    bool WasConnected() const { return wasConnected_; }

    void CheckTime() const {
        if (!wasConnected_ && context_.deadline.IsOver()) {
            throw Failure(ExitCode::TimedOut,
                          context_.options.address + ": not connected within " + context_.deadline.Text());
        }
    }

private:
    void Connected(const Event& event) {
        if (wasConnected_) {
            watch_.PrintEvent("connected", context_.options.address + ": connected again", event);
        }
        watch_.Begin(*event.device);
        if (!wasConnected_) {
            watch_.PrintStart();
        }
        wasConnected_ = true;
    }

    const Context& context_;
    Watch& watch_;
    bool wasConnected_ = false;
};

void WatchSession(const Context& context, Watch& watch) {
    SessionWatch handler(context, watch);
    context.prepareLibrary();
    const SessionEnd end(OpenSession(context.options.address, watch.SharedFeed()));
    while (!context.isInterrupted) {
        const News news = watch.Feed().Next();
        watch.PrintChanges(news.changes);
        if (news.event) {
            handler.Handle(*news.event);
        }
        handler.CheckTime();
    }
    watch.End();
    if (!handler.WasConnected()) {
        throw Interruption();
    }
    watch.PrintChanges(watch.Feed().Take().changes);
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
