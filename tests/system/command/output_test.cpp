// What reaches the terminal.
#include <gtest/gtest.h>

#include <algorithm>

#include "command/output/terminal.h"
#include "command/properties/value.h"
#include "command/text/escape.h"
#include "tests/kit/complete_device/complete_device.h"
#include "tests/kit/scripted_device.h"
#include "tests/system/command/invocation.h"
#include "tests/system/command/simulated_device.h"

namespace Morquil::Testing {
namespace {

using Command::Escaped;
using Command::ExitCode;
using Command::Json;

bool IsHarmless(const std::string& text) {
    return std::none_of(text.begin(), text.end(), [](char c) {
        const auto byte = static_cast<unsigned char>(c);
        return (byte < 0x20 && c != '\n') || byte == 0x7f;
    });
}

// A device whose name contains terminal control codes.
DeviceScript HostileDevice() {
    DeviceScript script = CompleteDevice();
    std::string& text = script.greeting;
    const std::string name = "Model name: Scripted";
    text.replace(text.find(name), name.size(),
                 "Model name: A\x1b[2J\x7f\xc2\x9b\xe2\x80\xae"
                 "B\tC");
    return script;
}

TEST(Escaping, ShowsTerminalControlCodes) {
    EXPECT_EQ(Escaped("a\x1b[0m\r\n\x7f"), "a\\x1b[0m\\x0d\\x0a\\x7f");
    EXPECT_EQ(Escaped("\xc2\x9b"), "\\x9b");
    // NOLINTNEXTLINE(misc-misleading-bidirectional): they are to be escaped
    EXPECT_EQ(Escaped("\xe2\x80\xae\xe2\x81\xa6"), "\\u202e\\u2066");
    EXPECT_EQ(Escaped(std::string_view("\0", 1)), "\\x00");
}

TEST(Escaping, ShowsBytesThatAreNotText) {
    EXPECT_EQ(Escaped("a\x9b\xff"
                      "b"),
              "a\\x9b\\xff"
              "b");
}

TEST(Escaping, LeavesOtherTextAlone) {
    EXPECT_EQ(Escaped("Z\xc3\xbcrich \xe2\x82\xac \xf0\x9f\x8e\xa5"), "Z\xc3\xbcrich \xe2\x82\xac \xf0\x9f\x8e\xa5");
}

TEST(Output, HasNoControlBytesOfADevice) {
    ScriptedDevice device(HostileDevice());
    for (const std::vector<std::string>& line : {std::vector<std::string>{"status"}, {"get", "device.name"}}) {
        const Outcome outcome = RunCommand(device.Address(), line);
        EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
        EXPECT_TRUE(IsHarmless(outcome.out)) << outcome.out;
        EXPECT_NE(outcome.out.find("\\u202eB"), std::string::npos) << outcome.out;
    }
}

TEST(Output, AsJsonIsAsciiOnly) {
    ScriptedDevice device(HostileDevice());
    const Outcome outcome = RunCommand(device.Address(), {"--json", "get", "device.name"});
    EXPECT_TRUE(IsHarmless(outcome.out)) << outcome.out;
    EXPECT_TRUE(std::all_of(outcome.out.begin(), outcome.out.end(), [](char c) { return c > 0; }));
    EXPECT_EQ(Json::parse(outcome.out).at("device.name"),
              "A\x1b[2J\x7f\xc2\x9b\xe2\x80\xae"
              "B\tC");
}

TEST(Output, IsBrokenIntoLinesThatFitATerminal) {
    std::string text;
    Command::Terminal terminal{.out = [&text](std::string_view piece) { text += piece; }, .err = {}, .width = 40};
    const std::vector<Command::Row> rows = {{"name", "a text that is too long for one line of it"}, {"b", "short"}};
    Command::PrintTable(terminal, rows);
    EXPECT_EQ(text, "name  a text that is too long for one\n      line of it\nb     short\n");
    text.clear();
    terminal.width.reset();
    Command::PrintTable(terminal, rows);
    EXPECT_EQ(text, "name  a text that is too long for one line of it\nb     short\n");
}

TEST(Output, OfEveryCommandCanBeJson) {
    SimulatedOnNetwork device;
    const std::vector<std::vector<std::string>> lines = {{"status"},
                                                         {"get"},
                                                         {"set", "--dry-run", "proc-amp.gain", "3"},
                                                         {"set", "proc-amp.gain", "3", "timecode.start"},
                                                         {"ranges"},
                                                         {"preset", "save", "2"},
                                                         {"preset", "name", "2"},
                                                         {"preset", "name", "2", "Late show"},
                                                         {"list"}};
    for (std::vector<std::string> line : lines) {
        line.push_back("--json");
        const Outcome outcome = RunCommand(device.Address(), line);
        EXPECT_EQ(outcome.code, ExitCode::Done) << outcome.err;
        EXPECT_FALSE(Json::parse(outcome.out, nullptr, false).is_discarded()) << outcome.out;
    }
}

TEST(Output, ShowsTheDeviceItsInputAndItsOutput) {
    ScriptedDevice device(CompleteDevice());
    const Outcome outcome = RunCommand(device.Address(), {"status"});
    EXPECT_EQ(outcome.out, "Address    " + device.Address() +
                               "\nDevice     Scripted\n"
                               "Versions   software version: 0x10, fpga version: 0x20\n"
                               "Locks      panel lock: no, remote lock: no\n"
                               "Input      SDI1, 1080i50, YCbCr422, Embedded, signal present: yes\n"
                               "Output     1080i50, YCbCr422, Anamorphic, Input\n"
                               "Reference  signal locked: yes\n");
}

}  // namespace
}  // namespace Morquil::Testing
