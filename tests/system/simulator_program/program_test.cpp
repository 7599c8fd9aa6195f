#include "simulator/program/program.h"

#include <gtest/gtest.h>

#include "tests/kit/temporary_folder.h"
#include "tests/system/simulator_program/raw_host.h"
#include "tests/system/simulator_program/running_program.h"

namespace Morquil::Simulator {
namespace {

using namespace std::chrono_literals;
using Morquil::Testing::ContentOf;
using Morquil::Testing::RawHost;
using Morquil::Testing::RunningProgram;
using Morquil::Testing::TemporaryFolder;

const std::string gainReport = "VIDEO PROC AMP:\nGain: 12\n\n";

/// Connects and receives the greeting, which ends with the names of the presets.
std::string Greeted(RawHost& host) {
    host.Send("PING\n\n");
    return host.ReceiveUntil("\n\nACK\n\n");
}

TEST(Program, AnswersHostsAndCarriesOutCommands) {
    const auto program = RunningProgram::AtAnyPort({});
    RawHost host("127.0.0.1", program->Port());
    EXPECT_TRUE(Greeted(host).starts_with("PROTOCOL PREAMBLE:\n"));
    program->Submit("set VIDEO PROC AMP Gain 12");
    EXPECT_EQ(host.ReceiveUntil(gainReport), gainReport);
    program->Submit("drop");
    EXPECT_EQ(host.ReceiveToEnd(), "");
    EXPECT_TRUE(host.SeesClose());
    program->Submit("quit");
    EXPECT_EQ(program->AwaitEnd(), 0);
}

TEST(Program, HangsUpAfterTheGivenNumberOfBytesInPiecesOfOneByte) {
    const auto program = RunningProgram::AtAnyPort(
        Options{.faults = {.latency = 20ms, .fragmentation = Fragmentation::Byte, .dropAfter = 321}});
    RawHost host("127.0.0.1", program->Port());
    EXPECT_EQ(host.ReceiveToEnd().size(), 321U);
    EXPECT_TRUE(host.SeesClose());
}

TEST(Program, SurvivesAFloodThatIsNotRead) {
    const auto program = RunningProgram::AtAnyPort(Options{.faults = {.flood = true}});
    RawHost idle("127.0.0.1", program->Port());
    RawHost host("127.0.0.1", program->Port());
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(host.ReceiveUntil("\n\n").ends_with("\n\n"));
    }
}

TEST(Program, PlaysAScriptForTheHostThatItWaitsFor) {
    const TemporaryFolder folder;
    const std::string script =
        folder.Make("script.txt", "wait-for-host\nafter 20 ms lock\nafter 10 ms drop\nwait-for-no-host\nquit\n");
    const auto program = RunningProgram::AtAnyPort(Options{.scriptFile = script});
    RawHost host("127.0.0.1", program->Port());
    EXPECT_TRUE(host.ReceiveToEnd().ends_with("MORQUIL DEVICE:\nRemote lock: true\n\n"));
    EXPECT_EQ(program->AwaitEnd(), 0);
}

TEST(Program, ReplaysWhatItHasRecorded) {
    const TemporaryFolder folder;
    const std::string file = folder.PathOf("conversation.txt");
    const auto talk = [](const std::unique_ptr<RunningProgram>& program) {
        RawHost host("127.0.0.1", program->Port());
        std::string text = Greeted(host);
        host.Send(gainReport);
        return text + host.ReceiveUntil(gainReport);
    };
    std::string original;
    {
        const auto program = RunningProgram::AtAnyPort(
            Options{.faults = {.crlf = false, .garbage = true, .seed = 5}, .recordFile = file});
        original = talk(program);
    }
    EXPECT_NE(ContentOf(file).find(" 1 host \"PING\\n\\n\"\n"), std::string::npos);
    const auto replay = RunningProgram::AtAnyPort(Options{.replayFile = file});
    EXPECT_EQ(talk(replay), original);
}

TEST(Program, BeginsWithTheSettingsOfAFile) {
    const TemporaryFolder folder;
    const auto program = RunningProgram::AtAnyPort(Options{.settingsFile = folder.Make("settings.txt", gainReport)});
    RawHost host("127.0.0.1", program->Port());
    EXPECT_NE(Greeted(host).find("VIDEO PROC AMP:\nGain: 12\n"), std::string::npos);
}

TEST(Program, IsFoundWhereHostsLookForDevices) {
    const auto program = RunningProgram::AtAnyAddress({});
    ASSERT_NE(program, nullptr);
    RawHost host(program->Address(), 9800);
    EXPECT_TRUE(Greeted(host).starts_with("PROTOCOL PREAMBLE:\n"));
}

TEST(Program, DoesNotStartWithAnUnusableFile) {
    const TemporaryFolder folder;
    const std::string nonsense = folder.Make("nonsense.txt", "COFFEE:\nSugar: 2\n\n");
    const std::string missing = folder.PathOf("missing.txt");
    const std::string nowhere = folder.PathOf("missing") + "/file.txt";
    for (const Options& options :
         {Options{.settingsFile = nonsense}, Options{.settingsFile = missing}, Options{.scriptFile = nonsense},
          Options{.scriptFile = missing}, Options{.recordFile = nowhere}, Options{.replayFile = nonsense},
          Options{.replayFile = missing}, Options{.replayFile = folder.Make("empty.txt", "# nothing\n")}}) {
        EXPECT_EQ(Program(options).Start(), usageError);
    }
}

TEST(Program, ReportsThatItCannotListenWhereAnotherProgramDoes) {
    const auto program = RunningProgram::AtAnyPort({});
    Options options;
    options.port = program->Port();
    EXPECT_EQ(Program(options).Start(), 1);
}

}  // namespace
}  // namespace Morquil::Simulator
