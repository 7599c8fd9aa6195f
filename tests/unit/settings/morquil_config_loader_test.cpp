#include "settings/morquil_config_loader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

#include "tests/kit/temporary_folder.h"
#include "tests/kit/threads.h"
#include "tests/unit/settings/queue_client.h"

namespace Morquil {
namespace {

using testing::ElementsAre;
using Testing::QueueClient;
using Testing::TemporaryFolder;
using Texts = std::vector<std::string>;

// A block of each kind that a settings file holds, in the order of the file.
// clang-format off
const Texts fileBlocks{
    "VIDEO INPUT:\nVideo source: SDI1\n\n",
    "VIDEO OUTPUT:\nTransition setting: 25\n\n",
    "VIDEO PROC AMP:\nGain: -12\nHue: 7\n\n",
    "VIDEO ADJUST:\nRed: 3\nLuma low: -1\nChroma high: 960\n\n",
    "NOISE REDUCTION:\nEnabled: true\nBias: -2\n\n",
    "TEST PATTERN:\nMotion: true\nHorizontal Rate: -5\n\n",
    "GENLOCK:\nLine offset: -5\nPixel offset: 17\n\n",
    "ANCILLARY DATA:\nTimecode input line: 9\nTimecode output line: 4294967295\n\n",
    "VIDEO ADVANCED:\nClean cadence: true\nRP177: false\n\n",
    "MODE3D:\n2D3D depth: 40\n3D tilt left: -3\n\n",
    "VARIABLE ASPECT RATIO:\nVariable Aspect Ratio zoom/crop: true\nResetValues: -1\n\n",
    "ALIGN:\nResetValues: 1\n\n",
    "AUDIO:\nAES output select: false\nMetadata dialog level: -31\n\n",
    "MORQUIL DEVICE:\nPanel lock: true\nRemote lock: false\n\n"};
// clang-format on

const std::string gain = "VIDEO PROC AMP:\nGain: 1\n\n";

class ConfigLoader : public testing::Test {
protected:
    bool Load(const std::string& content) { return loader.Load(folder.Make("settings.txt", content)); }

    const TemporaryFolder folder;
    QueueClient client;
    MorquilConfigLoader loader{client};
};

std::string SavedFile() {
    std::string content;
    for (const std::string& block : fileBlocks) {
        content += block + '\n';
    }
    return content;
}

TEST_F(ConfigLoader, QueuesTwelveBlocksOfASavedFileInSendingOrder) {
    EXPECT_TRUE(Load(SavedFile()));
    const auto block = [](std::size_t place) { return fileBlocks[place]; };
    EXPECT_THAT(client.TakeTexts(), ElementsAre(block(13), block(1), block(2), block(3), block(4), block(5), block(8),
                                                block(7), block(6), block(10), block(12), block(9)));
}

TEST_F(ConfigLoader, QueuesTheAlignmentThatIsNeverSent) {
    Load(SavedFile());
    EXPECT_EQ(client.SlotsTaken(), 13);
    client.TakeTexts();
    // The twelve slots that were sent are free again; the alignment stays pending in its own.
    Load(SavedFile());
    EXPECT_EQ(client.SlotsTaken(), 13 + 12);
}

TEST_F(ConfigLoader, ExpectsNoEchoOfWhatItQueues) {
    Load(SavedFile());
    while (const auto message = client.Take()) {
        EXPECT_FALSE(message->recordSentText) << TextOf(*message);
    }
    EXPECT_FALSE(client.ExpectsEcho());
}

TEST_F(ConfigLoader, LeavesTheInputConfigurationAlone) {
    EXPECT_TRUE(Load(fileBlocks[0]));
    EXPECT_EQ(client.SlotsTaken(), 0);
}

TEST_F(ConfigLoader, IgnoresWhatIsNotASetting) {
    for (const char* header :
         {"PROTOCOL PREAMBLE", "NETWORK", "NETWORK CONFIG", "DEVICE FILENAMES", "PRESET", "PRESET AVAILABILITY",
          "SUPPORTED CONVERSIONS", "GENLOCK AVAILABILITY", "ALIGN AVAILABILITY", "AUDIO AVAILABILITY", "NO BLOCK"}) {
        EXPECT_TRUE(Load(std::string(header) + ":\nVersion: 1.1\nName: text\n\n")) << header;
    }
    EXPECT_TRUE(Load("PING\n\nACK\n\nNACK\n\n"));
    EXPECT_EQ(client.SlotsTaken(), 0);
    // None of them damages what follows.
    Load(gain);
    EXPECT_THAT(client.TakeTexts(), ElementsAre(gain));
}

TEST_F(ConfigLoader, MergesLaterBlocksIntoPendingOnes) {
    Load("GENLOCK:\nLine offset: 1\nPixel offset: 2\n\nGENLOCK:\nLine offset: 3\n\n");
    Load("GENLOCK:\nPixel offset: 4\n\n");
    EXPECT_THAT(client.TakeTexts(), ElementsAre("GENLOCK:\nLine offset: 3\nPixel offset: 4\n\n"));
}

TEST_F(ConfigLoader, SendsABlockWithoutLinesToo) {
    Load("AUDIO:\n\n\n");
    EXPECT_THAT(client.TakeTexts(), ElementsAre("AUDIO:\n\n"));
}

TEST_F(ConfigLoader, ReadsBothKindsOfLineEnds) {
    Load("VIDEO PROC AMP:\r\nGain: 1\r\n\r\n\r\n");
    EXPECT_THAT(client.TakeTexts(), ElementsAre(gain));
}

TEST_F(ConfigLoader, LeavesOutUnknownKeysAndBadValues) {
    Load("VIDEO PROC AMP:\nGain: loud\nColour: 4\nno colon\nHue:\nBlack: 6 and more\n\n");
    EXPECT_THAT(client.TakeTexts(), ElementsAre("VIDEO PROC AMP:\nBlack: 6\n\n"));
}

TEST_F(ConfigLoader, LeavesOutADecimalWhoseLineWouldBeCut) {
    Load(
        "VARIABLE ASPECT RATIO:\nVariable Aspect Ratio size X left: 1e300\nVariable Aspect Ratio size Y left: 1e9\n\n");
    EXPECT_THAT(client.TakeTexts(),
                ElementsAre("VARIABLE ASPECT RATIO:\nVariable Aspect Ratio size Y left: 1000000000.000000\n\n"));
}

TEST_F(ConfigLoader, KeepsABlockThatAFileDoesNotFinishForTheNext) {
    Load("VIDEO PROC AMP:\nGain: 1\n");
    EXPECT_EQ(client.SlotsTaken(), 0);
    Load("Hue: 2\n\n");
    EXPECT_THAT(client.TakeTexts(), ElementsAre("VIDEO PROC AMP:\nGain: 1\nHue: 2\n\n"));
}

TEST_F(ConfigLoader, EndsALastLineWithoutLineFeed) {
    Load("VIDEO PROC AMP:\nGain: 1");
    EXPECT_EQ(client.SlotsTaken(), 0);
    Load("2\n\n");
    EXPECT_THAT(client.TakeTexts(), ElementsAre(gain));
}

TEST_F(ConfigLoader, AddsNoLineToAFileThatEndsWithALineFeedOrIsEmpty) {
    Load("VIDEO PROC AMP:\nGain: 1\n");
    Load("");
    EXPECT_EQ(client.SlotsTaken(), 0);
    Load("\n");
    EXPECT_THAT(client.TakeTexts(), ElementsAre(gain));
}

TEST_F(ConfigLoader, FollowsEveryGoodBlockAmongHostileBytes) {
    using namespace std::string_literals;
    const Texts hostile{std::string(255, 'x'),
                        std::string(256, ':'),
                        std::string(5000, 'y') + ":\n",
                        "\0\0:\0\n"s,
                        "\xFF\xFE\x00G\x00:"s,
                        "VIDEO PROC AMP:\nGain\0: 4\nHue: 9\0\n"s,
                        "PRESET:\n" + std::string(100000, 'z')};
    for (const std::string& bytes : hostile) {
        EXPECT_TRUE(Load(bytes + "\n\n\n"));
        client.TakeTexts();
        Load(gain);
        EXPECT_THAT(client.TakeTexts(), ElementsAre(gain)) << bytes.substr(0, 20);
    }
}

TEST_F(ConfigLoader, ReadsALineThatReachesFromOnePieceOfAFileIntoTheNext) {
    for (std::size_t before = 4096 - gain.size() - 2; before <= 4096 + 2; ++before) {
        Load(std::string(before, '\n') + gain + gain);
        EXPECT_THAT(client.TakeTexts(), ElementsAre(gain)) << before << " empty lines before";
    }
}

TEST_F(ConfigLoader, ReadsNoMoreThanTheLongestFile) {
    const std::size_t before = MorquilConfigLoader::longestFile - gain.size();
    EXPECT_TRUE(Load(std::string(before, '\n') + gain));
    EXPECT_THAT(client.TakeTexts(), ElementsAre(gain)) << "just fits";
    EXPECT_TRUE(Load(std::string(before + 1, '\n') + gain));
    EXPECT_THAT(client.TakeTexts(), ElementsAre()) << "the line that ends the block comes too late";
    EXPECT_TRUE(Load("Hue: 2\n\n"));
    EXPECT_THAT(client.TakeTexts(), ElementsAre()) << "a block that was cut does not wait for the next file";
    Load(gain);
    EXPECT_THAT(client.TakeTexts(), ElementsAre(gain));
}

TEST_F(ConfigLoader, ReportsAFileThatCannotBeOpened) {
    EXPECT_FALSE(loader.Load(folder.PathOf("missing.txt")));
    EXPECT_FALSE(loader.Load(folder.PathOf("")));
    EXPECT_FALSE(loader.Load(""));
    EXPECT_EQ(client.SlotsTaken(), 0);
}

TEST_F(ConfigLoader, OpensAPathWithAccents) {
    EXPECT_TRUE(loader.Load(folder.Make("Réglages été.txt", gain)));
    EXPECT_THAT(client.TakeTexts(), ElementsAre(gain));
}

// One long block each: the header of one inside the other would be lost, and its lines would have no block.
TEST_F(ConfigLoader, DoesNotMixTheLinesOfTwoThreads) {
    std::string hues;
    std::string offsets;
    for (int line = 0; line < 50000; ++line) {
        hues += "Hue: 3\n";
        offsets += "Pixel offset: 5\n";
    }
    const std::string paths[] = {folder.Make("levels.txt", "VIDEO PROC AMP:\nGain: 1\n" + hues + "Black: 2\n\n"),
                                 folder.Make("offsets.txt", "GENLOCK:\n" + offsets + "Line offset: 4\n\n")};
    for (int round = 0; round < 20; ++round) {
        std::atomic<std::size_t> started = 0;
        {
            const Morquil::Testing::Threads threads(2, [&] {
                const std::string& path = paths[started++];
                while (started < 2) {
                }
                EXPECT_TRUE(loader.Load(path));
            });
        }
        ASSERT_THAT(client.TakeTexts(), ElementsAre("VIDEO PROC AMP:\nGain: 1\nBlack: 2\nHue: 3\n\n",
                                                    "GENLOCK:\nLine offset: 4\nPixel offset: 5\n\n"));
    }
}

}  // namespace
}  // namespace Morquil
