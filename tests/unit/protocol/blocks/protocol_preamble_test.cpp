#include "protocol/blocks/protocol_preamble.h"

#include <gtest/gtest.h>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Preamble = ProtocolPreambleChangeSet;

ProtocolVersion Version(std::uint32_t flags, std::uint32_t minor) {
    return {.flags = flags, .minor = minor};
}

const GoldenBlock<Preamble> preamble{"PROTOCOL PREAMBLE", {{"Version: 2.22", &Preamble::version, Version(2, 22)}}};

TEST(ProtocolPreambleBlock, ReadsEveryLine) {
    preamble.ExpectReadsAndWritesEveryLine();
}

TEST(ProtocolPreambleBlock, ReadsTheVersionAsTwoNumbersAndNotAsADecimal) {
    const auto recorded = FedWith("PROTOCOL PREAMBLE", "Version: 2.1");
    EXPECT_EQ(recorded->sink.Last<Preamble>().version.Get(), Version(2, 1));
}

TEST(ProtocolPreambleBlock, ReportsBadVersionsAndUnknownKeys) {
    preamble.ExpectReports({{"Version: 2", "Failed to parse Version string \"2\"\n"},
                            {"Version: 2.", "Failed to parse Version string \"2.\"\n"},
                            {"Version: .1", "Failed to parse Version string \".1\"\n"},
                            {"Version: two.one", "Failed to parse Version string \"two.one\"\n"},
                            {"Versions: 2.1", "Unknown protocol preamble line \"Versions\"\n"}});
}

}  // namespace
}  // namespace Morquil
