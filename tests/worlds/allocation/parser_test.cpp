// Parsing allocates nothing, whatever is read and however it is split.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "protocol/every_block_sink.h"
#include "protocol/morquil_text_protocol_parser.h"
#include "tests/unit/device/device_rig.h"
#include "tests/worlds/allocation/full_dump.h"
#include "tests/worlds/allocation/scarce_memory.h"

namespace Morquil::Testing {
namespace {

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

/// One line of every block of settings in a block of its own, as a device reports a change at its panel.
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

TEST(Parser, AllocatesNothingForAFullDump) {
    const std::string dump = DumpText();
    for (const std::size_t length : {std::size_t{1}, std::size_t{64}, std::size_t{1024}, dump.size()}) {
        const CountingSink sink = Read(dump, length);
        EXPECT_EQ(sink.blocks, blockCount);
        EXPECT_EQ(sink.errors, 0U);
    }
}

TEST(Parser, AllocatesNothingForUpdates) {
    const std::string updates = UpdatesText();
    for (const std::size_t length : {std::size_t{1}, std::size_t{64}, std::size_t{1024}}) {
        const CountingSink sink = Read(updates, length);
        EXPECT_GT(sink.blocks, 0U);
        EXPECT_EQ(sink.acknowledgements, sink.blocks);
        EXPECT_EQ(sink.errors, 0U);
    }
}

TEST(Parser, AllocatesNothingForErrors) {
    const std::string line(1000, 'x');
    const CountingSink sink = Read(
        "SCOPES:\nWaveform: true\n\nAUDIO:\nno colon\nNo such key: 1\nAudioOut0: none\nKey:\n" + line + "\n\n", 64);
    EXPECT_EQ(sink.blocks, 1U);
    EXPECT_GE(sink.errors, 6U);
}

}  // namespace
}  // namespace Morquil::Testing
