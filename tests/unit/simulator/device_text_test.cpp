#include "simulator/blocks/device_text.h"

#include <gtest/gtest.h>

#include "protocol/blocks/all.h"
#include "protocol/every_block_sink.h"
#include "protocol/table/message.h"
#include "simulator/blocks/host_text_parser.h"
#include "simulator/text/text_lines.h"

namespace Morquil::Simulator {
namespace {

/// Whatever a device makes of a host's text, as the library would write it, and what it finds wrong with it.
class ReadText final : public EveryBlockSink<ReadText> {
public:
    explicit ReadText(const std::string& text) { HostTextParser(*this).Feed(text); }

    template <class Description>
    void OnBlock(const ChangeSetOf<Description>& set) {
        blocks += BlockText<Description>(set);
    }
    void OnPing() override {}
    void OnAcknowledge(bool /*positive*/) override {}
    void OnUnknownBlock() override { blocks += "?"; }
    void OnProtocolError(const char* text) override { errors += text; }

    std::string blocks;
    std::string errors;
};

template <class Vocabulary>
SetField<Vocabulary> AllWords() {
    SetField<Vocabulary> all;
    for (std::size_t word = 0; word < all.size; ++word) {
        all.Add(word);
    }
    return all;
}

TEST(DeviceText, BreaksALongWordListIntoLinesOfTheSameKey) {
    AudioAvailabilityChangeSet offers;
    offers.audioSelections = AllWords<AudioSelections>();
    int lines = 0;
    ForEachLine(DeviceText<AudioAvailabilityChangeSet>(offers), [&](std::string_view line) {
        EXPECT_LE(line.size(), longestLine);
        lines += line.starts_with("Audio selections: ") ? 1 : 0;
    });
    EXPECT_EQ(lines, 2);
    EXPECT_EQ(ReadText(DeviceText<AudioAvailabilityChangeSet>(offers)).blocks,
              BlockText<AudioAvailabilityChangeSet>(offers));
}

TEST(DeviceText, FillsALineToItsGreatestLength) {
    // "Audio selections:" and words of 8 and 9 characters: the first line is full when the next word would not fit.
    AudioAvailabilityChangeSet offers;
    offers.audioSelections = AllWords<AudioSelections>();
    std::vector<std::string> lines;
    ForEachLine(DeviceText<AudioAvailabilityChangeSet>(offers),
                [&](std::string_view line) { lines.emplace_back(line); });
    ASSERT_GT(lines.size(), 2U);
    const std::string_view next = std::string_view(lines[2]).substr(std::string_view("Audio selections: ").size());
    EXPECT_GT(lines[1].size() + 1 + next.substr(0, next.find(' ')).size(), longestLine);
}

TEST(DeviceText, WritesPhasesAsNumbers) {
    AudioChangeSet audio;
    audio.audioInPhase[3].Set(true);
    audio.audioDDPhase[0].Set(false);
    audio.aesOutputSelect.Set(true);
    EXPECT_EQ(DeviceText<AudioChangeSet>(audio),
              "AUDIO:\nAudioInPhase3: 1\nAudioDDPhase0: 0\nAES output select: true\n\n");
}

TEST(DeviceText, LeavesOutWhatDevicesNeverReport) {
    AlignChangeSet align;
    align.resetValues.Set(1);
    align.trimXLeft.Set(5);
    EXPECT_EQ(DeviceText<AlignChangeSet>(align), "ALIGN:\nAlign trim X left: 5\n\n");
}

TEST(DeviceText, KnowsABlockThatHoldsNothing) {
    VideoProcAmpChangeSet set;
    EXPECT_TRUE(HoldsNothing<VideoProcAmpChangeSet>(set));
    set.gain.Set(0);
    EXPECT_FALSE(HoldsNothing<VideoProcAmpChangeSet>(set));
}

TEST(HostTextParser, ReadsPhasesAsWordsAndAsNumbersInTheAudioBlockOnly) {
    EXPECT_EQ(ReadText("AUDIO:\nAudioInPhase3: true\n\n").blocks, "AUDIO:\nAudioInPhase3: true\n\n");
    EXPECT_EQ(ReadText("audio:\nAudioDDPhase0:false\n\n").blocks, "AUDIO:\nAudioDDPhase0: false\n\n");
    EXPECT_EQ(ReadText("AUDIO:\nAudioInPhase3: 180\n\n").blocks, "AUDIO:\nAudioInPhase3: true\n\n");
    EXPECT_EQ(ReadText("AUDIO:\nAudioInPhase3: maybe\n\n").errors,
              "Failed to parse \"AudioInPhase3\" value string \"maybe\"\n");
    EXPECT_EQ(ReadText("DEVICE FILENAMES:\nAudioInPhase3: true\n\n").errors,
              "Unknown device filename line \"AudioInPhase3\"\n");
}

TEST(HostTextParser, ReadsWhatDevicesNeverReport) {
    EXPECT_EQ(ReadText("ALIGN:\nResetValues: 5\n\n").blocks, "ALIGN:\nResetValues: 5\n\n");
    EXPECT_EQ(ReadText("AUDIO:\nMetadata program config: Nonsense\n\n").errors,
              "Failed to parse \"Metadata program config\" value string \"Nonsense\"\n");
}

TEST(HostTextParser, ReportsTheValuesThatHostsIgnoreSilently) {
    EXPECT_EQ(ReadText("ANCILLARY DATA:\nTimecode generate value: 01:02:03\n\n").errors,
              "Failed to parse \"Timecode generate value\" value string \"01:02:03\"\n");
    EXPECT_EQ(ReadText("ANCILLARY DATA:\ntimecode generate value: 01:02:03:04\n\n").errors, "");
    EXPECT_EQ(ReadText("video output:\nTransition setting: -1\n\n").errors,
              "Failed to parse \"Transition setting\" value string \"-1\"\n");
    EXPECT_EQ(ReadText("VIDEO OUTPUT:\nTransition setting: 10\n\n").errors, "");
    EXPECT_EQ(ReadText("VIDEO PROC AMP:\nGain: -1\n\n").errors, "");
}

TEST(HostTextParser, ReportsALineThatIsTooLongAndReadsNoPartOfIt) {
    const std::string padding(longestLine, ' ');
    const ReadText read("VIDEO PROC AMP:\nGain: 1\n" + padding + "Black: 2\n" + padding + "\nHue: 3\n\n");
    EXPECT_EQ(read.blocks, "VIDEO PROC AMP:\nGain: 1\nHue: 3\n\n");
    EXPECT_EQ(read.errors, "Received a line of more than 255 characters\nReceived line with no colon character\n");
}

TEST(HostTextParser, TakesAHeaderThatIsTooLongForAnUnknownBlock) {
    const ReadText read(std::string(longestLine + 1, 'x') + "PING\nGain: 1\n\nVIDEO PROC AMP:\nGain: 2\n\n");
    EXPECT_EQ(read.blocks, "?VIDEO PROC AMP:\nGain: 2\n\n");
}

}  // namespace
}  // namespace Morquil::Simulator
