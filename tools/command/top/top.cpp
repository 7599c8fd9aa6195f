// top.
#include <algorithm>
#include <memory>
#include <thread>

#include "command/commands/commands.h"
#include "command/output/rendering.h"
#include "command/top/frame.h"
#include "command/top/keys.h"
#include "command/top/monitor.h"

namespace Morquil::Command {
namespace {

// How often the state is read.
constexpr std::chrono::milliseconds tick{100};
constexpr std::size_t mostHappenings = 1000;

/// The devices of a live view.
class Monitors {
public:
    Monitors(const Context& context, const Selection& selection) {
        for (const std::string& address : context.addresses) {
            monitors_.push_back(std::make_unique<Monitor>(address, selection, context.longestSilence));
        }
    }

    /// What has happened since the last call, in the order of its time.
    std::vector<Happening> Update(View& view) {
        std::vector<Happening> happenings;
        view.devices.clear();
        for (const auto& monitor : monitors_) {
            monitor->Update(happenings);
            view.devices.push_back(monitor->Now());
        }
        view.now = WallClock::now();
        std::stable_sort(happenings.begin(), happenings.end(),
                         [](const Happening& left, const Happening& right) { return left.time < right.time; });
        return happenings;
    }

private:
    std::vector<std::unique_ptr<Monitor>> monitors_;
};

void Remember(View& view, std::vector<Happening> happenings) {
    for (Happening& happening : happenings) {
        view.happenings.push_front(std::move(happening));
    }
    view.happenings.resize(std::min(view.happenings.size(), mostHappenings));
}

void Scroll(View& view, Key key, ScreenSize size) {
    const std::size_t last = view.devices.size() - DevicesOnScreen(view.devices.size(), size);
    const std::size_t first = std::min(view.firstDevice, last);
    view.firstDevice = key == Key::Up ? first - std::min<std::size_t>(first, 1) : std::min(first + 1, last);
}

// Until the user quits.
void ShowOn(Screen& screen, const Context& context, Monitors& monitors) {
    View view;
    std::string shown;
    while (!context.isInterrupted) {
        Remember(view, monitors.Update(view));
        const std::string text = AsTerminalText(FrameOf(view, screen.Size()), context.terminal.isColoured);
        if (text != shown) {
            context.terminal.out(text);
            shown = text;
        }
        for (const Key key : KeysOf(screen.ReadKeys(tick))) {
            if (key == Key::Quit) {
                return;
            }
            Scroll(view, key, screen.Size());
        }
    }
}

// For a file, a pipe or a program: a line for everything that happens.
void PrintLines(const Context& context, Monitors& monitors) {
    View view;
    while (!context.isInterrupted) {
        for (const Happening& happening : monitors.Update(view)) {
            if (context.options.isJson) {
                PrintJsonLine(context.terminal, happening.json);
            } else {
                PrintLine(context.terminal, {Cell(LocalTime(happening.time), Style::Faint), happening.address,
                                             Cell(happening.text, happening.style)});
            }
        }
        std::this_thread::sleep_for(tick);
    }
}

}  // namespace

void ShowTop(const Context& context) {
    Selection selection = SelectProperties(context.options.words);
    std::erase_if(selection, [](const Property* property) { return !property->IsReadable(); });
    context.prepareLibrary();
    Monitors monitors(context, selection);
    // The library's messages and JSON would spoil a screen.
    const bool mayOpen = context.terminal.openScreen && !context.options.isJson && !context.options.isTraced;
    const std::unique_ptr<Screen> screen = mayOpen ? context.terminal.openScreen() : nullptr;
    screen ? ShowOn(*screen, context, monitors) : PrintLines(context, monitors);
}

}  // namespace Morquil::Command
