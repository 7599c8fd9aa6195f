#include "simulator/program/script.h"

#include <gtest/gtest.h>

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
    const std::string_view timeExpected = "a time such as 500 ms or 2 s (up to a day) is expected";
    const std::pair<const char*, std::string_view> cases[] = {
        {"at", timeExpected},
        {"at soon drop", timeExpected},
        {"at 2 drop", timeExpected},
        {"at -1 s drop", timeExpected},
        {"after nan s drop", timeExpected},
        {"after 25000000 s drop", timeExpected},
        {"at 2 s", "a command is expected"},
        {"dance", "unknown command \"dance\"; commands are: set, lock,"},
        {"drop it", "unknown command \"drop it\""},
        {"nack", "unknown command \"nack\""},
        {"set VIDEO PROC AMP Tint 2", "no key of VIDEO PROC AMP"},
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
    EXPECT_TRUE(script.error.starts_with("line 3: lines are carried out in order: 2000 ms")) << script.error;
    EXPECT_TRUE(script.lines.empty());
}

class ScriptRunnerTest : public testing::Test {
protected:
    void Add(std::string_view script, std::chrono::milliseconds now = 0ms) {
        ScriptReading reading = ReadScript(script);
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

TEST_F(ScriptRunnerTest, CountsFromWhenALineWasTyped) {
    Add("after 1 s lock\n", 60s);
    EXPECT_EQ(runner.NextDue(), 61s);
    EXPECT_EQ(At(60s), Texts{});
    EXPECT_EQ(At(61s), Texts{"lock"});
}

}  // namespace
}  // namespace Morquil::Simulator
