// The live view of real connections, on a screen that the test plays and as lines of text.
#include <gtest/gtest.h>

#include "command/properties/value.h"
#include "tests/system/command/fake_screen.h"
#include "tests/system/command/invocation.h"
#include "tests/system/command/simulated_device.h"

namespace Morquil::Testing {
namespace {

using Command::ExitCode;
using Command::Json;
using namespace std::chrono_literals;

constexpr const char* unusedAddress = "127.255.255.1";

class TopOnScreen : public testing::Test {
protected:
    Circumstances OnScreen() {
        return {.openScreen = [this] { return terminal.Open(); }};
    }

    FakeTerminal terminal;
    SimulatedOnNetwork device;
};

TEST_F(TopOnScreen, ShowsStateChangesAndCauses) {
    RunningCommand top("", {"-d", device.Address(), "-d", unusedAddress, "top"}, OnScreen());
    EXPECT_TRUE(top.AwaitOut("1 of 2 devices connected"));
    EXPECT_TRUE(top.AwaitOut("refuses the connection"));
    device.UsePanel("set VIDEO PROC AMP Gain 12");
    EXPECT_TRUE(top.AwaitOut("proc-amp.gain  0 -> 12"));
    device.UsePanel("set VIDEO INPUT Signal present false");
    EXPECT_TRUE(top.AwaitOut(" no signal"));
    terminal.Type("q");
    EXPECT_EQ(top.Join().code, ExitCode::Done);
    EXPECT_FALSE(terminal.IsOpen());
}

TEST_F(TopOnScreen, ShowsALossAndTheReturn) {
    RunningCommand top(device.Address(), {"top"}, OnScreen());
    ASSERT_TRUE(top.AwaitOut("1 of 1 device connected"));
    device.HangUp();
    EXPECT_TRUE(top.AwaitOut("the connection was lost"));
    device.UsePanel("set VIDEO PROC AMP Gain 7");
    EXPECT_TRUE(top.AwaitOut("0 -> 7"));
}

TEST_F(TopOnScreen, FollowsTheSizeOfTheScreen) {
    RunningCommand top(device.Address(), {"top"}, OnScreen());
    ASSERT_TRUE(top.AwaitOut("Reference"));
    terminal.Resize({20, 10});
    EXPECT_TRUE(top.AwaitOut("1 of 1 de~\x1b[K"));
}

TEST_F(TopOnScreen, EndsWhenItIsInterrupted) {
    RunningCommand top(device.Address(), {"top"}, OnScreen());
    ASSERT_TRUE(top.AwaitOut("connected"));
    top.Interrupt();
    EXPECT_EQ(top.Join().code, ExitCode::Done);
    EXPECT_FALSE(terminal.IsOpen());
}

TEST_F(TopOnScreen, LeavesTheScreenAloneWhenItWritesJson) {
    RunningCommand top(device.Address(), {"--json", "top"}, OnScreen());
    ASSERT_TRUE(top.AwaitOut("\n"));
    EXPECT_FALSE(terminal.IsOpen());
}

TEST(TopAsText, WritesALineForEverythingThatHappens) {
    SimulatedOnNetwork device;
    RunningCommand top("", {"-d", device.Address(), "-d", unusedAddress, "top", "proc-amp"});
    ASSERT_TRUE(top.AwaitOut(device.Address() + "  connected: input "));
    ASSERT_TRUE(top.AwaitOut(std::string(unusedAddress) + "  refuses the connection"));
    device.UsePanel("set VIDEO PROC AMP Gain 12");
    ASSERT_TRUE(top.AwaitOut(device.Address() + "  proc-amp.gain  0 -> 12"));
    top.Interrupt();
    const Outcome outcome = top.Join();
    EXPECT_EQ(outcome.code, ExitCode::Done);
    EXPECT_EQ(outcome.out.find('\x1b'), std::string::npos);
    EXPECT_EQ(outcome.err, "");
}

TEST(TopAsText, WritesObjectsForPrograms) {
    SimulatedOnNetwork device;
    RunningCommand top(device.Address(), {"--json", "top"});
    ASSERT_TRUE(top.AwaitOut("\n"));
    device.UsePanel("set VIDEO PROC AMP Gain 12");
    ASSERT_TRUE(top.AwaitOut("proc-amp.gain"));
    top.Interrupt();
    const std::string out = top.Join().out;
    const Json first = Json::parse(out.substr(0, out.find('\n')));
    EXPECT_EQ(first.at("event"), "connected");
    EXPECT_EQ(first.at("address"), device.Address());
    const Json change = Json::parse(out.substr(out.find('\n') + 1));
    EXPECT_EQ(change.at("name"), "proc-amp.gain");
    EXPECT_EQ(change.at("address"), device.Address());
}

TEST(TopAsText, SaysThatADeviceHasStoppedAnswering) {
    SimulatedOnNetwork device;
    RunningCommand top(device.Address(), {"top"}, {.longestSilence = 300ms});
    EXPECT_TRUE(top.AwaitOut("the device has not answered for 0.3 s"));
}

}  // namespace
}  // namespace Morquil::Testing
