// Settings as files.
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <thread>

#include "command/commands/settings_text.h"
#include "command/properties/value.h"
#include "tests/kit/temporary_folder.h"
#include "tests/system/command/invocation.h"
#include "tests/system/command/simulated_device.h"

namespace Morquil::Testing {
namespace {

using Command::ExitCode;
using Command::MissingLines;
using Command::ParseSettings;
using Command::Playback;
using Command::PlaybackOf;

TEST(SettingsText, IsReadBlockByBlock) {
    const auto lines = ParseSettings("VIDEO PROC AMP:\r\nGain: 12\r\n\r\nGENLOCK:\nType: Input\nno colon\n");
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(lines[0].block, "VIDEO PROC AMP");
    EXPECT_EQ(lines[0].key, "Gain");
    EXPECT_EQ(lines[0].value, "12");
    EXPECT_EQ(lines[1].block, "GENLOCK");
}

TEST(SettingsText, KnowsWhatIsPlayedBack) {
    EXPECT_EQ(PlaybackOf({"VIDEO INPUT", "Video source", "SDI1"}), Playback::NeverPlayed);
    EXPECT_EQ(PlaybackOf({"ALIGN", "Align size X left", "1.0"}), Playback::NeverPlayed);
    EXPECT_EQ(PlaybackOf({"AUDIO", "AudioInPhase1", "180"}), Playback::Unseen);
    EXPECT_EQ(PlaybackOf({"ANCILLARY DATA", "Timecode start", "true"}), Playback::Unseen);
    EXPECT_EQ(PlaybackOf({"ANCILLARY DATA", "Timecode start source", "User"}), Playback::Applied);
    EXPECT_EQ(PlaybackOf({"GENLOCK", "Type", "Input"}), Playback::Applied);
}

TEST(SettingsText, MissesAStillFrameActionBecauseNoDeviceReportsOne) {
    const auto wanted = ParseSettings("VIDEO OUTPUT:\nStill frame action: Load\nStill frame present: true\n");
    const auto missing = MissingLines(wanted, ParseSettings("VIDEO OUTPUT:\nTransition setting: 25\n"));
    ASSERT_EQ(missing.size(), 1u);
    EXPECT_EQ(missing[0].key, "Still frame action");
}

TEST(SettingsText, MissesLinesWithAnotherValue) {
    const auto saved =
        ParseSettings("GENLOCK:\nLine offset: 5\n\nANCILLARY DATA:\nTimecode generate value: 01:02:03;04\n");
    EXPECT_TRUE(MissingLines(ParseSettings("GENLOCK:\nLine offset: 9\nLine offset: 5.0\n"), saved).empty());
    EXPECT_TRUE(MissingLines(ParseSettings("ANCILLARY DATA:\nTimecode generate value: 01:02:03:04\n"), saved).empty());
    EXPECT_EQ(MissingLines(ParseSettings("GENLOCK:\nLine offset: 6\nType: Input\n"), saved).size(), 2u);
}

TEST(SettingsText, IsPlayedBackWithoutWhatADeviceIgnores) {
    const auto lines =
        ParseSettings("VIDEO INPUT:\nVideo source: SDI1\n\nGENLOCK:\nType: Input\nSignal locked: true\n\n");
    EXPECT_EQ(Command::PlayableText(lines), "GENLOCK:\nType: Input\n\n");
}

TEST(SettingsFiles, ComeBackAsSoonAsTheDeviceHasReportedThem) {
    SimulatedOnNetwork device;
    const TemporaryFolder folder;
    const std::string file = folder.PathOf("settings.txt");
    EXPECT_EQ(RunCommand(device.Address(), {"save", file}).code, ExitCode::Done);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(RunCommand(device.Address(), {"load", "-t", "30", file}).code, ExitCode::Done);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
}

TEST(SettingsFiles, ComeBackAsTheyWereSaved) {
    SimulatedOnNetwork device;
    const TemporaryFolder folder;
    const std::string file = folder.PathOf("settings \xc3\xa4.txt");
    EXPECT_EQ(RunCommand(device.Address(), {"set", "proc-amp.gain", "17"}).code, ExitCode::Done);
    EXPECT_EQ(RunCommand(device.Address(), {"save", file}).code, ExitCode::Done);
    EXPECT_EQ(RunCommand(device.Address(), {"set", "proc-amp.gain", "3"}).code, ExitCode::Done);
    const Outcome loaded = RunCommand(device.Address(), {"load", file});
    EXPECT_EQ(loaded.code, ExitCode::Done) << loaded.out << loaded.err;
    EXPECT_EQ(loaded.err,
              "morquilctl: these blocks are never played back: VIDEO INPUT, ALIGN\n"
              "morquilctl: a settings file holds no presets, no names and no network settings\n");
    EXPECT_EQ(RunCommand(device.Address(), {"get", "proc-amp.gain"}).out, "proc-amp.gain  17\n");
}

TEST(SettingsFiles, ReportTheLinesThatWereNotApplied) {
    SimulatedOnNetwork device;
    const TemporaryFolder folder;
    const std::string file = folder.Make("settings.txt", "VIDEO PROC AMP:\nGain: 4000\n\nGENLOCK:\nLine offset: 1\n\n");
    const Outcome outcome = RunCommand(device.Address(), {"load", "--partial", "--json", "-t", "0.5", file});
    EXPECT_EQ(outcome.code, ExitCode::NotApplied);
    const Command::Json missing = Command::Json::parse(outcome.out).at("notApplied");
    ASSERT_EQ(missing.size(), 1u) << outcome.out;
    EXPECT_EQ(missing.at(0).at("key"), "Gain");
}

// What is saved at first, as text.
std::string SavedBy(const SimulatedOnNetwork& device) {
    const Outcome outcome = RunCommand(device.Address(), {"save", "-"});
    EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    return outcome.out;
}

TEST(SettingsFiles, CanBeStandardOutput) {
    const SimulatedOnNetwork device;
    const std::string saved = SavedBy(device);
    EXPECT_EQ(saved.find("VIDEO INPUT:\n"), 0u);
    EXPECT_TRUE(Command::ShapeOf(saved).IsWhole());
}

TEST(SettingsFiles, ThatAreCutAnywhereAreNotLoaded) {
    const SimulatedOnNetwork device;
    const std::string whole = SavedBy(device);
    const std::size_t lastLine = whole.find_last_not_of('\n') + 2;  // with its end, without the empty line after it
    for (std::size_t length = 0; length <= lastLine; ++length) {
        EXPECT_FALSE(Command::ShapeOf(whole.substr(0, length)).IsWhole()) << length;
    }
    const TemporaryFolder folder;
    const std::string file = folder.Make("settings.txt", whole.substr(0, whole.size() / 2));
    const Outcome refused = RunCommand(device.Address(), {"load", file});
    EXPECT_EQ(refused.code, ExitCode::Usage);
    EXPECT_NE(refused.err.find("not a whole settings file: it ends within "), std::string::npos) << refused.err;
    EXPECT_NE(refused.err.find("MORQUIL DEVICE; with --partial"), std::string::npos) << refused.err;
    EXPECT_EQ(RunCommand(device.Address(), {"load", "--partial", file}).code, ExitCode::Done);
}

TEST(SettingsFiles, ThatLackABlockAreNotLoaded) {
    const SimulatedOnNetwork device;
    std::string text = SavedBy(device);
    const std::size_t begin = text.find("GENLOCK:");
    text.erase(begin, text.find("\n\n", begin) + 2 - begin);
    const TemporaryFolder folder;
    const Outcome outcome = RunCommand(device.Address(), {"load", folder.Make("settings.txt", text)});
    EXPECT_EQ(outcome.code, ExitCode::Usage);
    EXPECT_NE(outcome.err.find("it lacks GENLOCK;"), std::string::npos) << outcome.err;
}

TEST(SettingsFiles, ThatCannotBeWrittenSayWhy) {
    const SimulatedOnNetwork device;
    const TemporaryFolder folder;
    for (const std::string& file : {folder.PathOf("no folder/settings.txt"), folder.PathOf("")}) {
        const Outcome outcome = RunCommand(device.Address(), {"save", file});
        EXPECT_EQ(outcome.code, ExitCode::Usage);
        const std::size_t text = outcome.err.find(": cannot be written: ");
        EXPECT_NE(text, std::string::npos) << outcome.err;
    }
}

TEST(SettingsFiles, ThatAreReadOnlyStayAsTheyAre) {
    const SimulatedOnNetwork device;
    const TemporaryFolder folder;
    const std::string file = folder.Make("settings.txt", "old");
    using std::filesystem::perms;
    std::filesystem::permissions(file, perms::owner_read);
    const Outcome outcome = RunCommand(device.Address(), {"save", file});
    std::filesystem::permissions(file, perms::owner_all);
    EXPECT_EQ(outcome.code, ExitCode::Usage) << outcome.out;
    EXPECT_EQ(ContentOf(file), "old");
}

TEST(SettingsFiles, ThatAreTooLargeAreAMisuse) {
    const TemporaryFolder folder;
    const std::string file = folder.Make("settings.txt", std::string(std::size_t{16} * 1024 * 1024 + 1, '\n'));
    const Outcome outcome = RunCommand("127.0.0.1", {"load", file});
    EXPECT_EQ(outcome.code, ExitCode::Usage);
    EXPECT_NE(outcome.err.find("too large"), std::string::npos) << outcome.err;
}

TEST(SettingsFiles, ThatCannotBeWrittenAreAMisuse) {
    SimulatedOnNetwork device;
    const TemporaryFolder folder;
    const std::string file = folder.PathOf("no folder/settings.txt");
    EXPECT_EQ(RunCommand(device.Address(), {"save", file}).code, ExitCode::Usage);
}

TEST(SettingsFiles, StayUnchangedUnlessTheDeviceIsConnectedUntilTheyAreSaved) {
    const TemporaryFolder folder;
    for (int round = 0; round < 40; ++round) {
        SimulatedOnNetwork device;
        const std::string file = folder.Make("settings.txt", "old");
        std::thread cable([&] {
            device.AwaitHost();
            std::this_thread::sleep_for(round * std::chrono::microseconds(250));
            device.HangUp();
        });
        const Outcome outcome = RunCommand(device.Address(), {"save", file});
        cable.join();
        const bool isWhole = ContentOf(file).find("MORQUIL DEVICE:\nPanel lock: ") != std::string::npos;
        EXPECT_EQ(outcome.code == ExitCode::Done, isWhole) << outcome.out << outcome.err;
        EXPECT_EQ(outcome.code != ExitCode::Done, ContentOf(file) == "old") << ContentOf(file);
    }
}

}  // namespace
}  // namespace Morquil::Testing
