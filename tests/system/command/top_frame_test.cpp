// The lines of a live view.
#include "command/top/frame.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "command/text/escape.h"
#include "command/top/keys.h"

namespace Morquil::Testing {
namespace {

using namespace std::chrono_literals;
using Command::AsTerminalText;
using Command::DeviceView;
using Command::FrameOf;
using Command::Key;
using Command::KeysOf;
using Command::LinkState;
using Command::ScreenSize;
using Command::Style;
using Command::View;
using Command::WallClock;

const WallClock::time_point viewTime = WallClock::time_point(100h);

DeviceView ConnectedDevice(const std::string& address) {
    return {.address = address,
            .link = LinkState::Connected,
            .since = viewTime,
            .name = "Rack",
            .input = "1080i59.94",
            .output = "720p50",
            .reference = "locked",
            .locks = "none",
            .status = {{"Device", "Simulator, Rack"}}};
}

View ViewOf(std::size_t devices) {
    View view{.now = viewTime};
    for (std::size_t number = 1; number <= devices; ++number) {
        view.devices.push_back(ConnectedDevice("10.0.0." + std::to_string(number)));
    }
    return view;
}

std::vector<std::string> ShownLines(const View& view, ScreenSize size) {
    std::vector<std::string> lines;
    for (const Command::Row& row : FrameOf(view, size)) {
        std::string line;
        for (const Command::Cell& cell : row) {
            line += cell.text;
        }
        lines.push_back(line);
    }
    return lines;
}

bool HasLine(const std::vector<std::string>& lines, const std::string& text) {
    return std::any_of(lines.begin(), lines.end(),
                       [&text](const std::string& line) { return line.find(text) != std::string::npos; });
}

TEST(TopFrame, ShowsTheStateOfEveryDevice) {
    View view = ViewOf(2);
    view.devices[1].link = LinkState::Lost;
    view.devices[1].since = viewTime - 90s;
    view.devices[1].cause = "the connection was lost";
    const std::vector<std::string> lines = ShownLines(view, {80, 24});
    EXPECT_NE(lines.at(0).find("1 of 2 devices connected"), std::string::npos) << lines.at(0);
    EXPECT_EQ(lines.at(1), "ADDRESS   LINK        INPUT                OUTPUT        REF      LOCKS   NAME  ");
    EXPECT_EQ(lines.at(2), "10.0.0.1  connected   1080i59.94           720p50        locked   none    Rack  ");
    EXPECT_EQ(lines.at(3), "10.0.0.2  lost        1 min: the connection was lost");
}

TEST(TopFrame, ShowsMoreOfASingleDevice) {
    EXPECT_TRUE(HasLine(ShownLines(ViewOf(1), {80, 24}), "Device     Simulator, Rack"));
    EXPECT_FALSE(HasLine(ShownLines(ViewOf(2), {80, 24}), "Simulator"));
}

TEST(TopFrame, FitsEveryScreen) {
    View view = ViewOf(30);
    view.devices[0].name = "\xc3\x84rger \xe2\x82\xac with a name that is far too long for any screen";
    view.devices[1].address = "a-host-name-that-is-far-too-long.example.com";
    view.happenings.assign(50, {viewTime, "10.0.0.1", "proc-amp.gain  0 -> 12, and so on, and so on, and so on"});
    for (const ScreenSize size : {ScreenSize{80, 24}, {200, 60}, {40, 10}, {12, 3}, {1, 1}}) {
        const std::vector<std::string> lines = ShownLines(view, size);
        EXPECT_LE(lines.size(), size.rows);
        for (const std::string& line : lines) {
            EXPECT_LE(Command::WidthOf(line), size.columns) << line;
        }
    }
}

TEST(TopFrame, LeavesRoomForTheLatestChanges) {
    View view = ViewOf(100);
    for (const char* const text : {"newest", "newer", "old"}) {
        view.happenings.push_back({viewTime, "10.0.0.1", text});
    }
    const std::vector<std::string> lines = ShownLines(view, {80, 24});
    EXPECT_TRUE(HasLine(lines, "newest"));
    EXPECT_TRUE(HasLine(lines, "old"));
    EXPECT_FALSE(HasLine(lines, "10.0.0.16 "));
}

TEST(TopFrame, ScrollsToTheLastDeviceAndNoFurther) {
    View view = ViewOf(100);
    view.firstDevice = 1000;
    const std::vector<std::string> lines = ShownLines(view, {80, 24});
    EXPECT_TRUE(HasLine(lines, "(86-100 shown, arrows scroll)"));
    EXPECT_TRUE(HasLine(lines, "10.0.0.100  connected"));
}

TEST(TopFrame, SaysEverythingInWords) {
    View view = ViewOf(1);
    view.devices[0].hasSignal = false;
    view.devices[0].input = "1080i59.94 no signal";
    const std::string plain = AsTerminalText(FrameOf(view, {80, 24}), false);
    EXPECT_NE(plain.find("no signal"), std::string::npos);
    EXPECT_EQ(plain.find("\x1b[3"), std::string::npos);
    EXPECT_NE(AsTerminalText(FrameOf(view, {80, 24}), true).find("\x1b[31m1080i59.94 no signal"), std::string::npos);
}

TEST(TopFrame, LetsNoTextSteerTheTerminal) {
    View view = ViewOf(1);
    view.devices[0].name = "\x1b[2J\r\n";
    EXPECT_TRUE(HasLine(ShownLines(view, {120, 24}), "\\x1b[2J\\x0d\\x0a"));
}

TEST(TopFrame, ReplacesWhatTheScreenShowed) {
    EXPECT_EQ(AsTerminalText({{"one"}, {"two"}}, false), "\x1b[Hone\x1b[K\r\ntwo\x1b[K\x1b[J");
}

TEST(TopKeys, AreLettersAndArrows) {
    EXPECT_EQ(KeysOf("k\x1b[B?q"), (std::vector<Key>{Key::Up, Key::Down, Key::Quit}));
    EXPECT_TRUE(KeysOf("\x1b[C").empty());
}

}  // namespace
}  // namespace Morquil::Testing
