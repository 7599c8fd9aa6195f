#include <gtest/gtest.h>

#include <regex>
#include <sstream>

#include "command/properties/value.h"
#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/scripted_device.h"
#include "tests/system/command/invocation.h"
#include "tests/system/command/simulated_device.h"

namespace Morquil::Testing {
namespace {

using Command::ExitCode;
using Command::Json;

TEST(Watching, ReportsAChangeWithItsTime) {
    SimulatedOnNetwork device;
    RunningCommand watch(device.Address(), {"watch", "proc-amp"});
    ASSERT_TRUE(watch.AwaitErr("watching 7 properties"));
    device.UsePanel("set VIDEO PROC AMP Gain 12");
    ASSERT_TRUE(watch.AwaitOut("0 -> 12"));
    watch.Interrupt();
    const Outcome outcome = watch.Join();
    EXPECT_EQ(outcome.code, ExitCode::Done);
    const std::regex line(R"(\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d\.\d{3}  proc-amp\.gain  0 -> 12\n)");
    EXPECT_TRUE(std::regex_match(outcome.out, line)) << outcome.out;
}

TEST(Watching, AccountsForEveryValueWhileItsOutputIsHeldUp) {
    constexpr int values = 60;
    SimulatedOnNetwork device;
    RunningCommand watch(device.Address(), {"watch", "--json", "proc-amp.gain"});
    ASSERT_TRUE(watch.AwaitErr("watching 1 property"));
    watch.HoldOutput();
    for (int value = 1; value <= values; ++value) {
        device.UsePanel("set VIDEO PROC AMP Gain " + std::to_string(value));
    }
    watch.ReleaseOutput();
    ASSERT_TRUE(watch.AwaitOut("\"new\":60"));
    watch.Interrupt();
    std::istringstream lines(watch.Join().out);
    int shown = 0;
    int seen = 0;
    for (std::string line; std::getline(lines, line);) {
        const Json change = Json::parse(line);
        EXPECT_EQ(change.at("old"), shown) << line;
        shown = change.at("new");
        seen += 1 + change.at("skipped").get<int>();
    }
    EXPECT_EQ(shown, values);
    EXPECT_EQ(seen, values);
}

TEST(Watching, EndsAtOnceWhileItConnects) {
    for (const std::vector<std::string>& line :
         {std::vector<std::string>{"watch", "-t", "20"}, {"watch", "--wait-reconnect", "-t", "20"}}) {
        ScriptedDevice device({.greeting = preamble});
        RunningCommand watch(device.Address(), line);
        ASSERT_TRUE(device.AwaitHost());
        watch.Interrupt();
        const Outcome outcome = watch.Join();
        EXPECT_EQ(outcome.code, ExitCode::Interrupted);
        EXPECT_EQ(outcome.out + outcome.err, "");
        device.HangUp();
    }
}

TEST(Watching, IsSilentAboutWhatIsNotWatched) {
    SimulatedOnNetwork device;
    RunningCommand watch(device.Address(), {"watch", "--json", "proc-amp.hue"});
    ASSERT_TRUE(watch.AwaitErr("watching 1 property"));
    device.UsePanel("set VIDEO PROC AMP Gain 12");
    device.UsePanel("set VIDEO PROC AMP Hue 5");
    ASSERT_TRUE(watch.AwaitOut("\n"));
    watch.Interrupt();
    const Json change = Json::parse(watch.Join().out);
    EXPECT_EQ(change.at("name"), "proc-amp.hue");
    EXPECT_EQ(change.at("old"), 0);
    EXPECT_EQ(change.at("new"), 5);
}

TEST(Watching, EndsWhenTheConnectionIsLost) {
    SimulatedOnNetwork device;
    RunningCommand watch(device.Address(), {"watch"});
    ASSERT_TRUE(watch.AwaitErr("watching"));
    device.HangUp();
    const Outcome outcome = watch.Join();
    EXPECT_EQ(outcome.code, ExitCode::ConnectionLost);
    EXPECT_NE(outcome.err.find("the connection was lost"), std::string::npos) << outcome.err;
}

TEST(Watching, ReconnectsAfterALossWhenAllowed) {
    SimulatedOnNetwork device;
    RunningCommand watch(device.Address(), {"watch", "--wait-reconnect", "proc-amp.gain"});
    ASSERT_TRUE(watch.AwaitErr("watching 1 property"));
    device.HangUp();
    ASSERT_TRUE(watch.AwaitOut("the connection was lost"));
    ASSERT_TRUE(watch.AwaitOut("connected again"));
    device.UsePanel("set VIDEO PROC AMP Gain 7");
    ASSERT_TRUE(watch.AwaitOut("0 -> 7"));
    watch.Interrupt();
    EXPECT_EQ(watch.Join().code, ExitCode::Done);
}

}  // namespace
}  // namespace Morquil::Testing
