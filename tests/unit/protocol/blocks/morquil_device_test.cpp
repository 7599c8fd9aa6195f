#include "protocol/blocks/morquil_device.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Device = MorquilDeviceChangeSet;

// clang-format off
const GoldenBlock<Device> device{"MORQUIL DEVICE", {
    {"Model name: Rack Unit 4",     &Device::modelName,       "Rack Unit 4"},
    {"Software Version: 0x1060200", &Device::softwareVersion, 0x1060200U},
    {"FPGA Version: 0xff",          &Device::fpgaVersion,     0xFFU},
    {"Panel lock: true",            &Device::panelLock,       true},
    {"Remote lock: false",          &Device::remoteLock,      false}}};
// clang-format on

Device ReceivedDevice(const std::string& lines) {
    const auto recorded = FedWith("MORQUIL DEVICE", lines);
    EXPECT_EQ(recorded->sink.Errors(), RecordingSink::Events()) << lines;
    return recorded->sink.Last<Device>();
}

TEST(MorquilDeviceBlock, ReadsAndWritesEveryLine) {
    device.ExpectReadsAndWritesEveryLine();
}

TEST(MorquilDeviceBlock, WritesItsLinesInOrder) {
    device.ExpectWritesItsLinesInOrder();
}

TEST(MorquilDeviceBlock, ReportsBadValuesAndUnknownKeys) {
    device.ExpectReports({NotAValue("Panel lock", "1"),
                          NotAValue("Remote lock", "True"),
                          {"Model: X", "Unknown morquil device line \"Model\"\n"}});
}

TEST(MorquilDeviceBlock, WritesAVersionInLowerCaseHexadecimal) {
    EXPECT_EQ(WrittenBack<Device>("MORQUIL DEVICE", "FPGA Version: 0x1A"), "MORQUIL DEVICE:\nFPGA Version: 0x1a\n\n");
}

TEST(MorquilDeviceBlock, KnowsButNeverWritesAVersionOfZero) {
    const Device received = ReceivedDevice("Software Version: 0x0\nFPGA Version: 0x0");
    EXPECT_TRUE(received.softwareVersion.IsPresent());
    EXPECT_TRUE(received.fpgaVersion.IsPresent());
    EXPECT_EQ(BlockText<Device>(received), "MORQUIL DEVICE:\n\n");
}

TEST(MorquilDeviceBlock, AcceptsAMalformedVersionSilently) {
    const Device received = ReceivedDevice("Software Version: newest\nFPGA Version: 26");
    EXPECT_TRUE(received.softwareVersion.IsPresent());
    EXPECT_TRUE(received.fpgaVersion.IsPresent());
}

TEST(MorquilDeviceBlock, KeepsTheFirst49CharactersOfTheModelName) {
    EXPECT_EQ(ReceivedDevice("Model name: " + std::string(60, 'm')).modelName.Get(), std::string(49, 'm'));
}

TEST(MorquilDeviceBlock, NeverCutsTheModelNameInsideACharacter) {
    const std::string name = std::string(48, 'm') + "\xC3\xA9";
    EXPECT_EQ(ReceivedDevice("Model name: " + name).modelName.Get(), std::string(48, 'm'));
}

TEST(MorquilDeviceBlock, NeverWritesAnEmptyModelName) {
    Device nameless;
    nameless.modelName.Set("");
    EXPECT_EQ(BlockText<Device>(nameless), "MORQUIL DEVICE:\n\n");
}

}  // namespace
}  // namespace Morquil
