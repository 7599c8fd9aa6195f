// Reading takes no memory, whatever is read and however it is split.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>

#include "protocol/every_block_sink.h"
#include "protocol/morquil_text_protocol_parser.h"
#include "tests/allocation/exempt_comms.h"
#include "tests/device/device_rig.h"

namespace Morquil::Testing {
namespace {

using Test::Exempt;
using Test::ExemptComms;
using Test::ScarceMemory;

class CountingSink final : public EveryBlockSink<CountingSink> {
public:
    template <class Description>
    void OnBlock(const ChangeSetOf<Description>& /*set*/) {
        ++blocks;
    }
    void OnPing() override {}
    void OnAcknowledge(bool /*positive*/) override { ++acknowledgements; }
    void OnUnknownBlock() override {}
    void OnProtocolError(const char* /*text*/) override { ++errors; }

    std::size_t blocks = 0;
    std::size_t acknowledgements = 0;
    std::size_t errors = 0;
};

std::string DumpText() {
    std::ostringstream text;
    text << std::ifstream(MORQUIL_TEST_DATA "/full_dump.txt", std::ios::binary).rdbuf();
    return text.str();
}

/// One line of every block of settings in a block of its own, as a device reports what somebody turns.
std::string UpdatesText() {
    std::string updates;
    const std::string_view settings = settingsText;
    for (std::size_t at = 0; at < settings.size(); at = settings.find("\n\n", at) + 2) {
        const std::size_t header = settings.find('\n', at);
        updates += settings.substr(at, settings.find('\n', header + 1) + 1 - at);
        updates += "\nACK\n\n";
    }
    return updates;
}

/// Reads `text` in pieces of this length. Returns what has arrived.
CountingSink Read(std::string_view text, std::size_t length) {
    CountingSink sink;
    MorquilTextProtocolParser parser;
    parser.SetSink(&sink);
    const ScarceMemory memory(0, false);
    for (; !text.empty(); text.remove_prefix(std::min(length, text.size()))) {
        parser.Feed(text.data(), std::min(length, text.size()));
    }
    EXPECT_FALSE(ScarceMemory::HasRunOut()) << "in pieces of " << length;
    return sink;
}

TEST(Parser, TakesNoMemoryForAFullDump) {
    const std::string dump = DumpText();
    for (const std::size_t length : {std::size_t{1}, std::size_t{64}, std::size_t{1024}, dump.size()}) {
        const CountingSink sink = Read(dump, length);
        EXPECT_EQ(sink.blocks, blockCount);
        EXPECT_EQ(sink.errors, 0U);
    }
}

TEST(Parser, TakesNoMemoryForUpdates) {
    const std::string updates = UpdatesText();
    for (const std::size_t length : {std::size_t{1}, std::size_t{64}, std::size_t{1024}}) {
        const CountingSink sink = Read(updates, length);
        EXPECT_GT(sink.blocks, 0U);
        EXPECT_EQ(sink.acknowledgements, sink.blocks);
        EXPECT_EQ(sink.errors, 0U);
    }
}

TEST(Parser, TakesNoMemoryForWhatItComplainsOf) {
    const std::string line(1000, 'x');
    const CountingSink sink = Read(
        "SCOPES:\nWaveform: true\n\nAUDIO:\nno colon\nNo such key: 1\nAudioOut0: none\nKey:\n" + line + "\n\n", 64);
    EXPECT_EQ(sink.blocks, 1U);
    EXPECT_GE(sink.errors, 6U);
}

// The mirrors, the observers' lists and the waiting calls included. What the device is asked for in return is made as a
// message each; a state that is told for the second time asks for nothing.
TEST(Device, TakesNoMemoryForAFullDump) {
    const Exempt test;
    const Watchdog watchdog;
    FakeConnection link;
    link.AnswerWith(DeviceAnswer);
    link.Push(GreetingText());
    auto* const device = new CMorquilDevice(std::make_unique<ExemptComms>(link.MakeComms()));
    _MorquilConnectToFailure reason{};
    ASSERT_EQ(device->Connect(OwnedBstr(Utf16{OLESTR("device.test")}).Get(), nullptr, &reason), S_OK);
    const std::string dump = DumpText();
    link.Push(dump);
    ASSERT_TRUE(link.AwaitIdle());
    {
        const ScarceMemory memory(0, false);
        link.Push(dump);
        EXPECT_TRUE(link.AwaitIdle());
        EXPECT_FALSE(ScarceMemory::HasRunOut());
    }
    EXPECT_TRUE(link.IsOpen());
    device->Disconnect();
    device->Release();
}

}  // namespace
}  // namespace Morquil::Testing
