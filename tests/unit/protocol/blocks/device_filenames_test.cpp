#include "protocol/blocks/device_filenames.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Names = DeviceFilenamesChangeSet;

const GoldenBlock<Names> names{"DEVICE FILENAMES", {{"Still frame name: still-1", &Names::stillFrameName, "still-1"}}};

TEST(DeviceFilenamesBlock, ReadsAndWritesEveryLine) {
    names.ExpectReadsAndWritesEveryLine();
}

TEST(DeviceFilenamesBlock, ReportsUnknownKeys) {
    names.ExpectReports({{"Still name: a", "Unknown device filename line \"Still name\"\n"}});
}

TEST(DeviceFilenamesBlock, KeepsTheFirst49CharactersOfAReceivedName) {
    EXPECT_EQ(WrittenBack<Names>("DEVICE FILENAMES", "Still frame name: " + std::string(60, 'n')),
              "DEVICE FILENAMES:\nStill frame name: " + std::string(49, 'n') + "\n\n");
}

TEST(DeviceFilenamesBlock, SendsUpTo50Characters) {
    Names set;
    set.stillFrameName.Set(std::string(60, 'n'));
    EXPECT_EQ(BlockText<Names>(set), "DEVICE FILENAMES:\nStill frame name: " + std::string(50, 'n') + "\n\n");
}

}  // namespace
}  // namespace Morquil
