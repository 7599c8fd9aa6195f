#include "simulator/program/script.h"

#include <gtest/gtest.h>

#include <map>

namespace Morquil::Simulator {
namespace {

using namespace std::chrono_literals;
using Timing = ScriptLine::Timing;

struct LineCase {
    const char* text;
    Timing timing;
    std::chrono::milliseconds time;
    CommandKind kind;
};

TEST(Script, ReadsTimesAndCommands) {
    const LineCase cases[] = {
        {"drop", Timing::AtOnce, 0ms, CommandKind::Drop},
        {"at 2 s set VIDEO PROC AMP Gain 12", Timing::At, 2000ms, CommandKind::Set},
        {"  AT 500ms  Drop \r", Timing::At, 500ms, CommandKind::Drop},
        {"after 1.5 s nack   on", Timing::After, 1500ms, CommandKind::RefuseOn},
        {"after 0 ms drop mid-block", Timing::After, 0ms, CommandKind::DropMidBlock},
        {"wait-for-host", Timing::AtOnce, 0ms, CommandKind::WaitForHost},
    };
    for (const LineCase& expected : cases) {
        const ScriptLineReading reading = ReadScriptLine(expected.text);
        ASSERT_TRUE(reading.line) << expected.text << ": " << reading.error;
        EXPECT_EQ(reading.line->timing, expected.timing) << expected.text;
        EXPECT_EQ(reading.line->time, expected.time) << expected.text;
        EXPECT_EQ(reading.line->command.kind, expected.kind) << expected.text;
    }
    EXPECT_EQ(ReadScriptLine("at 2 s set VIDEO PROC AMP Gain 12").line->command.text, "set VIDEO PROC AMP Gain 12");
}

TEST(Script, SaysWhatItExpectsInsteadOfALineThatItCannotRead) {
    const std::string_view timeExpected = "expected a time such as 500 ms or 2 s (at most a day)";
    const std::pair<const char*, std::string_view> cases[] = {
        {"at", timeExpected},
        {"at soon drop", timeExpected},
        {"at 2 drop", timeExpected},
        {"at -1 s drop", timeExpected},
        {"after nan s drop", timeExpected},
        {"after 25000000 s drop", timeExpected},
        {"at 2 s", "expected a command after the time"},
        {"dance", "unknown command \"dance\"; commands are: set, lock,"},
        {"drop it", "unknown command \"drop it\""},
        {"nack", "unknown command \"nack\""},
        {"set VIDEO PROC AMP Tint 2", "expected a key of VIDEO PROC AMP"},
        {"set VIDEO PROC AMP Gain much", "Failed to parse"},
    };
    for (const auto& [text, error] : cases) {
        const ScriptLineReading reading = ReadScriptLine(text);
        EXPECT_FALSE(reading.line) << text;
        EXPECT_TRUE(reading.error.starts_with(error)) << text << " -> " << reading.error;
    }
}

TEST(Script, SkipsCommentsAndBlankLinesAndCountsThem) {
    EXPECT_EQ(ReadScript("# a comment\n\n  # another\nlock\n").lines.size(), 1U);
    EXPECT_TRUE(ReadScript("# a comment\n\nlock\ndance\n").error.starts_with("line 4: unknown command"));
}

TEST(Script, RefusesTimesThatGoBack) {
    const ScriptReading script = ReadScript("at 2 s lock\ndrop\nat 1 s unlock\n");
    EXPECT_TRUE(script.error.starts_with("line 3: times must not go back: 1000 ms follows 2000 ms")) << script.error;
    EXPECT_TRUE(script.lines.empty());
}

TEST(Script, ReadsTheDevicesBeforeACommand) {
    const std::pair<const char*, Targets> cases[] = {
        {"@7 drop", {7, 7}},  {"at 2 s @1-10 drop", {1, 10}}, {"after 1 ms  @20  drop", {20, 20}},
        {"@* drop", {1, 20}}, {"@1-1 drop", {1, 1}},
    };
    for (const auto& [text, targets] : cases) {
        const ScriptLineReading reading = ReadScriptLine(text, 20);
        ASSERT_TRUE(reading.line) << text << ": " << reading.error;
        EXPECT_EQ(reading.line->command.targets, targets) << text;
        EXPECT_EQ(reading.line->command.text, "drop") << text;
    }
    EXPECT_TRUE(ReadScriptLine("help", 20).line);
    EXPECT_TRUE(ReadScriptLine("drop", 1).line);
}

TEST(Script, SaysWhichDevicesItExpects) {
    const std::string expected = "expected a device from @1 to @20, a range such as @1-20, or @* for all";
    const std::pair<const char*, std::string> cases[] = {
        {"drop", expected + " before \"drop\""},
        {"@0 drop", expected + ", not \"@0\""},
        {"@21 drop", expected + ", not \"@21\""},
        {"@3-2 drop", expected + ", not \"@3-2\""},
        {"@-3 drop", expected + ", not \"@-3\""},
        {"@1- drop", expected + ", not \"@1-\""},
        {"@seven drop", expected + ", not \"@seven\""},
        {"@99999999999 drop", expected + ", not \"@99999999999\""},
        {"@ drop", expected + ", not \"@\""},
        {"@7", "expected a command after the device; \"help\" lists the commands"},
        {"@7 quit", "\"quit\" is for the whole program and takes no device"},
        {"@7 dance", "unknown command \"dance\"; commands are: "},
    };
    for (const auto& [text, error] : cases) {
        const ScriptLineReading reading = ReadScriptLine(text, 20);
        EXPECT_FALSE(reading.line) << text;
        EXPECT_TRUE(reading.error.starts_with(error)) << text << " -> " << reading.error;
    }
    EXPECT_TRUE(ReadScriptLine("@1 drop").error.starts_with("unknown command \"@1 drop\"")) << "a device on its own";
}

class ScriptRunnerTest : public testing::Test {
protected:
    void Add(std::string_view script, std::chrono::milliseconds now = 0ms, unsigned deviceCount = 0) {
        ScriptReading reading = ReadScript(script, deviceCount);
        ASSERT_EQ(reading.error, "");
        for (ScriptLine& line : reading.lines) {
            runner.Add(std::move(line), now);
        }
    }

    /// The commands that are carried out at a moment.
    std::vector<std::string> At(std::chrono::milliseconds now, std::size_t hostCount = 0) {
        std::vector<std::string> commands;
        while (const auto command = runner.Next(now, [=](unsigned /*device*/) { return hostCount; })) {
            commands.push_back(command->text);
        }
        return commands;
    }

    using Texts = std::vector<std::string>;
    ScriptRunner runner;
};

TEST_F(ScriptRunnerTest, CarriesOutEachLineWhenItIsDueAndInOrder) {
    Add("lock\nat 2 s drop\nsilent\nafter 500 ms speak\nat 2100 ms unlock\n");
    EXPECT_EQ(At(0ms), Texts{"lock"});
    EXPECT_EQ(runner.NextDue(), 2000ms);
    EXPECT_EQ(At(1999ms), Texts{});
    EXPECT_EQ(At(2000ms), (Texts{"drop", "silent"}));
    EXPECT_EQ(runner.NextDue(), 2500ms);
    EXPECT_EQ(At(2500ms), (Texts{"speak", "unlock"}));
    EXPECT_EQ(runner.NextDue(), std::nullopt);
}

TEST_F(ScriptRunnerTest, DoesNotAddUpDelays) {
    Add("after 1 s lock\nafter 1 s unlock\n");
    EXPECT_EQ(At(1700ms), Texts{"lock"});
    EXPECT_EQ(runner.NextDue(), 2000ms);
}

TEST_F(ScriptRunnerTest, WaitsForAHostToConnectAndToLeave) {
    Add("wait-for-host\nafter 1 s drop\nwait-for-no-host\nquit\n");
    EXPECT_EQ(At(10ms), Texts{});
    EXPECT_EQ(runner.NextDue(), std::nullopt);
    EXPECT_EQ(At(5000ms, 1), Texts{});
    EXPECT_EQ(runner.NextDue(), 6000ms) << "counted from when the host connected";
    EXPECT_EQ(At(6000ms, 1), Texts{"drop"});
    EXPECT_EQ(At(6001ms, 0), Texts{"quit"});
}

TEST_F(ScriptRunnerTest, CarriesACommandOutAtOneDeviceAfterTheOther) {
    Add("after 1 s @2-3 lock\nafter 1 s @1 drop\n", 0ms, 3);
    EXPECT_EQ(runner.Next(1000ms, {})->targets, (Targets{2, 2}));
    EXPECT_EQ(runner.PendingCount(), 2U);
    EXPECT_EQ(runner.Next(1500ms, {})->targets, (Targets{3, 3}));
    EXPECT_EQ(runner.NextDue(), 2000ms);
    EXPECT_EQ(runner.Next(2000ms, {})->targets, (Targets{1, 1}));
    EXPECT_EQ(runner.PendingCount(), 0U);
}

TEST_F(ScriptRunnerTest, WaitsForTheHostsOfTheDevicesThatItNames) {
    Add("@2-3 wait-for-host\n@* wait-for-no-host\nquit\n", 0ms, 3);
    std::map<unsigned, std::size_t> hosts{{1, 1}, {2, 1}, {3, 0}};
    const auto count = [&](unsigned device) { return hosts.at(device); };
    EXPECT_FALSE(runner.Next(0ms, count));
    hosts = {{1, 0}, {2, 1}, {3, 2}};
    EXPECT_FALSE(runner.Next(1ms, count));
    EXPECT_EQ(runner.PendingCount(), 2U) << "the first wait is over";
    hosts = {{1, 0}, {2, 0}, {3, 0}};
    EXPECT_EQ(runner.Next(2ms, count)->text, "quit");
}

TEST_F(ScriptRunnerTest, CountsFromWhenALineWasTyped) {
    Add("after 1 s lock\n", 60s);
    EXPECT_EQ(runner.NextDue(), 61s);
    EXPECT_EQ(At(60s), Texts{});
    EXPECT_EQ(At(61s), Texts{"lock"});
}

}  // namespace
}  // namespace Morquil::Simulator
