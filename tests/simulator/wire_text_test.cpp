#include "simulator/wire_text.h"

#include <gtest/gtest.h>

#include "protocol/blocks/all.h"

namespace Morquil::Simulator {
namespace {

TEST(WireText, BreaksALongWordListIntoLinesOfTheSameKey) {
    std::string words;
    for (int word = 0; word < 60; ++word) {
        words += " Word" + std::to_string(word);
    }
    const std::string broken = BreakLongLines("List:" + words + "\n\n");
    std::string joined;
    int lines = 0;
    for (std::size_t start = 0; broken[start] != '\n'; ++lines) {
        const std::size_t end = broken.find('\n', start);
        EXPECT_LE(end - start, longestLine);
        EXPECT_EQ(broken.substr(start, 6), "List: ");
        joined += " " + broken.substr(start + 6, end - start - 6);
        start = end + 1;
    }
    EXPECT_EQ(joined, words);
    EXPECT_EQ(lines, 2);
}

TEST(WireText, LeavesLinesOfTheGreatestLengthAlone) {
    const std::string line = "Key: " + std::string(longestLine - 5, 'x') + "\n";
    EXPECT_EQ(BreakLongLines(line), line);
}

TEST(WireText, WritesPhasesAsNumbers) {
    AudioChangeSet audio;
    audio.audioInPhase[3].Set(true);
    audio.audioDDPhase[0].Set(false);
    audio.aesOutputSelect.Set(true);
    EXPECT_EQ(DeviceText<AudioChangeSet>(audio),
              "AUDIO:\nAudioInPhase3: 1\nAudioDDPhase0: 0\nAES output select: true\n\n");
}

TEST(WireText, ReadsPhasesOfHostsInTheAudioBlockOnly) {
    EXPECT_EQ(LineFromHost("AUDIO", "AudioInPhase3: true"), "AudioInPhase3: 1");
    EXPECT_EQ(LineFromHost("audio", "AudioDDPhase0:false"), "AudioDDPhase0: 0");
    EXPECT_EQ(LineFromHost("AUDIO", "AES output select: true"), "AES output select: true");
    EXPECT_EQ(LineFromHost("DEVICE FILENAMES", "AudioInPhase3: true"), "AudioInPhase3: true");
}

TEST(WireText, LeavesOutWhatDevicesNeverReport) {
    AlignChangeSet align;
    align.resetValues.Set(1);
    align.trimXLeft.Set(5);
    EXPECT_EQ(DeviceText<AlignChangeSet>(align), "ALIGN:\nAlign trim X left: 5\n\n");
}

TEST(WireText, KnowsTheValuesThatReadersPassOverInSilence) {
    EXPECT_TRUE(IsSilentlyLost("ANCILLARY DATA", {"Timecode generate value", "01:02:03"}));
    EXPECT_FALSE(IsSilentlyLost("ANCILLARY DATA", {"timecode generate value", "01:02:03:04"}));
    EXPECT_TRUE(IsSilentlyLost("video output", {"Transition setting", "-1"}));
    EXPECT_FALSE(IsSilentlyLost("VIDEO OUTPUT", {"Transition setting", "10"}));
    EXPECT_FALSE(IsSilentlyLost("VIDEO PROC AMP", {"Gain", "-1"}));
}

TEST(WireText, KnowsABlockThatHoldsNothing) {
    VideoProcAmpChangeSet set;
    EXPECT_TRUE(HoldsNothing<VideoProcAmpChangeSet>(set));
    set.gain.Set(0);
    EXPECT_FALSE(HoldsNothing<VideoProcAmpChangeSet>(set));
}

}  // namespace
}  // namespace Morquil::Simulator
