// Comparing devices and files, and making them the same.
#include <gtest/gtest.h>

#include "command/properties/value.h"
#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/scripted_device.h"
#include "tests/kit/temporary_folder.h"
#include "tests/system/command/invocation.h"
#include "tests/system/command/simulated_device.h"

namespace Morquil::Testing {
namespace {

using Command::ExitCode;
using Command::Json;

std::string ValueOf(const SimulatedOnNetwork& device, const std::string& name) {
    return RunCommand(device.Address(), {"get", "--value", name}).out;
}

TEST(Getting, WritesTheValuesAloneForScripts) {
    const SimulatedOnNetwork device;
    EXPECT_EQ(RunCommand(device.Address(), {"get", "--value", "input.signal-present", "proc-amp.gain"}).out,
              "true\n0\n");
}

TEST(Getting, ShowsAllPropertiesUnlessSomeAreNamed) {
    const SimulatedOnNetwork device;
    EXPECT_EQ(RunCommand(device.Address(), {"get"}).out, RunCommand(device.Address(), {"get", "*"}).out);
}

TEST(Applying, SetsWhatDiffersFromAFile) {
    const SimulatedOnNetwork device;
    const TemporaryFolder folder;
    const std::string file =
        folder.Make("values.json", R"({"proc-amp.hue": 0, "proc-amp.gain": 7, "device.name": "X", "color.red": null})");
    const Outcome planned = RunCommand(device.Address(), {"apply", "--dry-run", file});
    EXPECT_EQ(planned.code, ExitCode::Done) << planned.err;
    EXPECT_EQ(planned.out, "proc-amp.gain  0 -> 7\n");
    EXPECT_EQ(ValueOf(device, "proc-amp.gain"), "0\n");
    const Outcome applied = RunCommand(device.Address(), {"apply", file});
    EXPECT_EQ(applied.code, ExitCode::Done) << applied.err;
    EXPECT_EQ(applied.out, planned.out);
    EXPECT_EQ(ValueOf(device, "proc-amp.gain"), "7\n");
    EXPECT_EQ(RunCommand(device.Address(), {"apply", file}).out, "");
}

TEST(Applying, SendsNothingUnlessEveryValueIsAccepted) {
    ScriptedDevice device(CompleteDevice());
    const TemporaryFolder folder;
    const std::string file = folder.Make("values.json", R"({"proc-amp.gain": 7, "proc-amp.hue": 9})");
    const Outcome outcome = RunCommand(device.Address(), {"apply", file});
    EXPECT_EQ(outcome.code, ExitCode::Usage);
    EXPECT_EQ(outcome.err, "morquilctl: proc-amp.hue: 9 is outside -1 to 1\n");
    EXPECT_TRUE(device.AwaitHostGone());
    EXPECT_FALSE(device.HasReceivedChange());
}

TEST(Applying, RefusesAFileThatIsNotOfProperties) {
    const TemporaryFolder folder;
    for (const char* const text :
         {"", "[]", "{", R"({"proc-amp.gian": 1})", R"({"proc-amp.gain": [1]})", R"({"proc-amp.gain": "x"})",
          R"({"timecode.start": ""})", R"({"device.name": "X"})"}) {
        const Outcome outcome = RunCommand("127.0.0.1", {"apply", folder.Make("values.json", text)});
        EXPECT_EQ(outcome.code, ExitCode::Usage) << text << outcome.err;
    }
}

TEST(Applying, RestoresAllThatWasRead) {
    const SimulatedOnNetwork device;
    const TemporaryFolder folder;
    const std::string file = folder.Make("values.json", RunCommand(device.Address(), {"get", "--json"}).out);
    EXPECT_EQ(RunCommand(device.Address(), {"set", "output.video-mode", "625i50 PAL", "proc-amp.gain", "7"}).code,
              ExitCode::Done);
    const Outcome applied = RunCommand(device.Address(), {"apply", file});
    EXPECT_EQ(applied.code, ExitCode::Done) << applied.err;
    EXPECT_EQ(RunCommand(device.Address(), {"diff", file}).out, "");
}

TEST(Comparing, ShowsWhatDiffersFromAFileOfValues) {
    const SimulatedOnNetwork device;
    const TemporaryFolder folder;
    const std::string file = folder.Make("values.json", R"({"proc-amp.hue": 0, "proc-amp.gain": 7})");
    const Outcome outcome = RunCommand(device.Address(), {"diff", file});
    EXPECT_EQ(outcome.code, ExitCode::NotApplied);
    EXPECT_EQ(outcome.out, "proc-amp.gain  0  7\n");
    EXPECT_EQ(outcome.err, "morquilctl: 1 difference\n");
}

TEST(Comparing, ShowsWhatDiffersFromASettingsFile) {
    const SimulatedOnNetwork device;
    const TemporaryFolder folder;
    const std::string file = folder.PathOf("settings.txt");
    EXPECT_EQ(RunCommand(device.Address(), {"save", file}).code, ExitCode::Done);
    EXPECT_EQ(RunCommand(device.Address(), {"diff", file}).code, ExitCode::Done);
    EXPECT_EQ(RunCommand(device.Address(), {"set", "proc-amp.gain", "7"}).code, ExitCode::Done);
    EXPECT_EQ(RunCommand(device.Address(), {"diff", file}).out, "VIDEO PROC AMP: Gain  7  0\n");
}

TEST(Copying, MakesTheOthersLikeTheFirst) {
    const SimulatedOnNetwork source;
    const SimulatedOnNetwork one;
    const SimulatedOnNetwork other;
    EXPECT_EQ(RunCommand(source.Address(), {"set", "network.name", "Model", "output.video-mode", "720p50",
                                            "proc-amp.gain", "-3", "test-pattern.output", "Bars"})
                  .code,
              ExitCode::Done);
    const Outcome copied = RunCommand(source.Address(), {"copy", one.Address(), other.Address()});
    EXPECT_EQ(copied.code, ExitCode::Done) << copied.err;
    for (const SimulatedOnNetwork* const device : {&one, &other}) {
        const Outcome compared = RunCommand("", {"-d", source.Address(), "-d", device->Address(), "diff"});
        EXPECT_EQ(compared.code, ExitCode::Done) << compared.out << compared.err;
        EXPECT_NE(ValueOf(*device, "network.name"), "Model\n");
    }
    EXPECT_EQ(RunCommand(source.Address(), {"copy", source.Address()}).code, ExitCode::Usage);
}

TEST(DryRuns, SendNothing) {
    ScriptedDevice device(CompleteDevice());
    const Outcome outcome = RunCommand(device.Address(), {"set", "--dry-run", "proc-amp.gain", "7", "timecode.start"});
    EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
    EXPECT_EQ(outcome.out, "proc-amp.gain   0 -> 7\ntimecode.start  would be sent\n");
    EXPECT_TRUE(device.AwaitHostGone());
    EXPECT_FALSE(device.HasReceivedChange());
}

}  // namespace
}  // namespace Morquil::Testing
