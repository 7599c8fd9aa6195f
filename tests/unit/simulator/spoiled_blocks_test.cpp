#include "simulator/faults/spoiled_blocks.h"

#include <gtest/gtest.h>

namespace Morquil::Simulator {
namespace {

const std::string block = "GENLOCK:\nLine offset: 4\n\n";

TEST(SpoiledBlocks, LeavesBlocksAloneUnlessTheyAreToBeSpoiled) {
    EXPECT_EQ(SpoiledBlocks().Pass(block, false), block);
}

TEST(SpoiledBlocks, AddsALineToEveryBlockButToNoPing) {
    EXPECT_EQ(SpoiledBlocks().Pass("PING\n\n" + block + "PRESET AVAILABILITY:\n\nping\r\n\r\n", true),
              "PING\n\nGENLOCK:\nLine offset: 4\nTo be refused: yes\n\n"
              "PRESET AVAILABILITY:\nTo be refused: yes\n\nping\r\n\r\n");
}

TEST(SpoiledBlocks, ProducesTheSameTextForEverySplit) {
    const std::string stream = block + "PING\n\n" + block;
    const std::string whole = SpoiledBlocks().Pass(stream, true);
    for (std::size_t split = 0; split <= stream.size(); ++split) {
        SpoiledBlocks blocks;
        const std::string first = blocks.Pass(stream.substr(0, split), true);
        EXPECT_EQ(first + blocks.Pass(stream.substr(split), true), whole) << "split at " << split;
    }
}

}  // namespace
}  // namespace Morquil::Simulator
