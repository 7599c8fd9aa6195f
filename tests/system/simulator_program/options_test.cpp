#include "simulator/program/options.h"

#include <gtest/gtest.h>

namespace Morquil::Simulator {
namespace {

struct Reading {
    std::optional<Options> options;
    int exitStatus = -1;
};

Reading Read(std::vector<const char*> arguments) {
    arguments.insert(arguments.begin(), "morquil-sim");
    Reading reading;
    reading.options = ReadOptions(static_cast<int>(arguments.size()), arguments.data(), reading.exitStatus);
    return reading;
}

TEST(Options, AreThoseOfAnOrdinaryDeviceByDefault) {
    const Reading reading = Read({});
    ASSERT_TRUE(reading.options);
    EXPECT_EQ(reading.options->address, "127.0.0.1");
    EXPECT_EQ(reading.options->port, 9800);
    EXPECT_EQ(reading.options->identity.protocolVersion.flags, 2U);
    EXPECT_EQ(reading.options->identity.protocolVersion.minor, 22U);
    EXPECT_FALSE(reading.options->faults.dropAfter);
    EXPECT_EQ(reading.options->faults.fragmentation, Fragmentation::None);
}

TEST(Options, AllowOneDeviceWhatTheyAllowWithoutANumberOfDevices) {
    EXPECT_TRUE(Read({"--devices", "1", "--record", "file"}).options);
    EXPECT_TRUE(Read({"--devices", "1", "--replay", "file"}).options);
}

TEST(Options, DescribeTheDevice) {
    const Reading reading = Read({"--address", "127.0.0.7", "--port=9801", "--model", "Rack 3", "--software-version",
                                  "0x1f", "--fpga-version", "12", "--protocol-version", "3.21", "--remote-lock"});
    ASSERT_TRUE(reading.options);
    EXPECT_EQ(reading.options->address, "127.0.0.7");
    EXPECT_EQ(reading.options->port, 9801);
    EXPECT_EQ(reading.options->identity.modelName, "Rack 3");
    EXPECT_EQ(reading.options->identity.softwareVersion, 0x1fU);
    EXPECT_EQ(reading.options->identity.fpgaVersion, 12U);
    EXPECT_EQ(reading.options->identity.protocolVersion.flags, 3U);
    EXPECT_EQ(reading.options->identity.protocolVersion.minor, 21U);
    EXPECT_TRUE(reading.options->identity.remoteLock);
}

TEST(Options, DescribeHowItSends) {
    const Reading reading = Read({"--latency", "40", "--fragment", "Random", "--seed", "7", "--crlf"});
    ASSERT_TRUE(reading.options);
    EXPECT_EQ(reading.options->faults.latency, std::chrono::milliseconds(40));
    EXPECT_EQ(reading.options->faults.fragmentation, Fragmentation::Random);
    EXPECT_EQ(reading.options->faults.seed, 7U);
    EXPECT_TRUE(reading.options->faults.crlf);
    EXPECT_EQ(Read({"--fragment", "byte"}).options->faults.fragmentation, Fragmentation::Byte);
}

TEST(Options, SwitchEachFaultOnByItself) {
    const std::pair<const char*, bool Faults::*> flags[] = {
        {"--never-acknowledge", &Faults::neverAcknowledge},
        {"--nack-all", &Faults::refuseAll},
        {"--close-mid-block", &Faults::closeMidBlock},
        {"--garbage", &Faults::garbage},
        {"--long-lines", &Faults::longLines},
        {"--flood", &Faults::flood},
        {"--silent", &Faults::silent},
    };
    for (const auto& [name, member] : flags) {
        const Reading reading = Read({name});
        ASSERT_TRUE(reading.options) << name;
        for (const auto& [other, otherMember] : flags) {
            EXPECT_EQ(reading.options->faults.*otherMember, member == otherMember) << name << " and " << other;
        }
    }
    EXPECT_EQ(Read({"--drop-after", "0"}).options->faults.dropAfter, 0U);
}

TEST(Options, SayWhatWouldBeRightInsteadOfWhatIsWrong) {
    struct Wrong {
        std::vector<const char*> arguments;
        const char* error;
    };
    const Wrong cases[] = {
        {{"--bogus"}, "--bogus"},
        {{"word"}, "word"},
        {{"--port"}, "--port"},
        {{"--port", "70000"}, "--port: expected a number from 0 to 65535, not \"70000\""},
        {{"--port", "-1"}, "--port: expected a number from 0 to 65535, not \"-1\""},
        {{"--address", "here"}, "--address: expected an IPv4 address such as 127.0.0.1, not \"here\""},
        {{"--devices", "0"}, "--devices: expected a number from 1 to 10000, not \"0\""},
        {{"--devices", "70000"}, "--devices: expected a number from 1 to 10000, not \"70000\""},
        {{"--devices", "text"}, "--devices: expected a number from 1 to 10000, not \"text\""},
        {{"--devices", "2", "--record", "file"}, "--devices excludes --record"},
        {{"--devices", "2", "--replay", "file"}, "--devices excludes --replay"},
        {{"--devices", "300", "--address", "255.255.255.1"}, "there are fewer than 300 addresses from 255.255.255.1"},
        {{"--devices", "1000", "--model", "a name of 45 bytes, which leaves no room at a"},
         "--model: expected at most 44 bytes before the number of one of 1000 devices"},
        {{"--model", ""}, "--model: expected a name of 1 to 49 printable bytes"},
        {{"--protocol-version", "2"}, "--protocol-version: expected a version of two numbers, such as 2.22"},
        {{"--software-version", "new"}, "--software-version: expected a number from 0 to 4294967295"},
        {{"--latency", "1 s"}, "--latency: expected a number from 0 to 60000"},
        {{"--fragment", "halves"}, "--fragment: expected none|byte|random, not \"halves\""},
        {{"--drop-after", "-1"}, "--drop-after: expected a number from 0 to 2147483647"},
        {{"--replay", "file", "--silent"}, "--replay excludes --silent"},
    };
    for (const Wrong& wrong : cases) {
        testing::internal::CaptureStderr();
        const Reading reading = Read(wrong.arguments);
        const std::string printed = testing::internal::GetCapturedStderr();
        EXPECT_FALSE(reading.options) << wrong.error;
        EXPECT_EQ(reading.exitStatus, usageError) << wrong.error;
        EXPECT_NE(printed.find(wrong.error), std::string::npos) << printed;
    }
}

}  // namespace
}  // namespace Morquil::Simulator
