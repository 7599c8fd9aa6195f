// watch.
#include "command/changes/local_time.h"
#include "command/changes/watched_device.h"
#include "command/commands/commands.h"
#include "command/commands/kept_connection.h"
#include "command/output/rendering.h"
#include "command/properties/property.h"

namespace Morquil::Command {
namespace {

/// What a watch prints.
class Printer {
public:
    explicit Printer(const Context& context) : context_(context) {}

    void PrintStart(std::size_t count) const {
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

    void PrintEvent(const char* name, const std::string& what, const Event& event) const {
        const std::string text = context_.options.address + ": " + what;
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
};

// A frozen device keeps its connection, and sends nothing.
void ExpectNotSilent(const Context& context, const Link& link) {
    if (IsSilent(link.Device(), context.longestSilence)) {
        throw Failure(ExitCode::ConnectionLost, link.Address() + ": " + SilentText(context.longestSilence));
    }
}

// Runs until the connection is lost or the user stops the watch.
void WatchOneConnection(const Context& context, WatchedDevice& watched) {
    const Printer printer(context);
    Link link(context);
    link.BecomeOpenEnded();
    const morquil::Subscription ended = link.Device().OnConnection(
        {.disconnected = [feed = watched.SharedFeed()](morquil::ConnectFailure) { feed->Add({EventKind::Lost}); }});
    watched.Begin(link.Device());
    printer.PrintStart(watched.Count());
    while (!context.isInterrupted && !link.IsLost()) {
        printer.PrintChanges(watched.Feed().Next().changes);
        ExpectNotSilent(context, link);
    }
    watched.End();
    printer.PrintChanges(watched.Feed().Take().changes);
    link.CheckIsThere();
}

/// Decides what the events of a kept connection mean for a watch. Until the first connection, a failure is final.
class KeptWatch {
public:
    KeptWatch(const Context& context, WatchedDevice& watched)
        : context_(context),
          printer_(context),
          watched_(watched),
          connection_(context.options.address, watched.SharedFeed(), FailedAttempts::UntilConnected) {}

    /// Waits for news, and handles them.
    void Proceed() {
        const News news = watched_.Feed().Next();
        printer_.PrintChanges(news.changes);
        if (news.event) {
            Handle(*news.event);
        }
        CheckTime();
        wasSilent_ = connection_.DropIfSilent(context_.longestSilence) || wasSilent_;
    }

    void End() {
        watched_.End();
        if (!wasConnected_) {
            throw Interruption();
        }
        printer_.PrintChanges(watched_.Feed().Take().changes);
    }

private:
    void Handle(const Event& event) {
        switch (event.kind) {
            case EventKind::Connected:
                Connected(event);
                break;
            case EventKind::Lost:
                printer_.PrintEvent(
                    "lost", wasSilent_ ? SilentText(context_.longestSilence) : "the connection was lost", event);
                wasSilent_ = false;
                break;
            case EventKind::Failed:
                throw Failure(ExitCode::Unreachable,
                              context_.options.address + ": " + CauseOf(context_.options.address, event.reason));
        }
    }

    void Connected(const Event& event) {
        if (wasConnected_) {
            printer_.PrintEvent("connected", "connected again", event);
        }
        watched_.Begin(*event.device);
        if (!wasConnected_) {
            printer_.PrintStart(watched_.Count());
        }
        wasConnected_ = true;
    }

    void CheckTime() const {
        if (!wasConnected_ && context_.deadline.IsOver()) {
            throw Failure(ExitCode::TimedOut,
                          context_.options.address + ": not connected within " + context_.deadline.Text());
        }
    }

    const Context& context_;
    const Printer printer_;
    WatchedDevice& watched_;
    const KeptConnection connection_;
    bool wasConnected_ = false;
    bool wasSilent_ = false;
};

void WatchKeptConnection(const Context& context, WatchedDevice& watched) {
    context.prepareLibrary();
    KeptWatch watch(context, watched);
    while (!context.isInterrupted) {
        watch.Proceed();
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
    WatchedDevice watched(std::move(selection));
    context.options.reconnects ? WatchKeptConnection(context, watched) : WatchOneConnection(context, watched);
}

}  // namespace Morquil::Command
