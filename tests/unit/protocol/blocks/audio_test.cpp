#include "protocol/blocks/audio.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Audio = AudioChangeSet;
using AudioAvailable = AudioAvailabilityChangeSet;
using Limits32 = Range<std::int32_t>;
using AudioLines = std::vector<GoldenLine<Audio>>;

const std::string audioHeader = "AUDIO";

std::string Indexed(const std::string& stem, std::size_t index, const std::string& value) {
    return stem + std::to_string(index) + ": " + value;
}

/// Keys from index 0, each with its own number.
template <class Array>
void AddNumbers(AudioLines& lines, const std::string& stem, Array Audio::*member, std::size_t count) {
    for (std::size_t index = 0; index < count; ++index) {
        lines.emplace_back(Indexed(stem, index, std::to_string(index)), At(member, index), index);
    }
}

/// Keys from index 0, each with the word of its number.
template <class Array>
void AddWords(AudioLines& lines, const std::string& stem, Array Audio::*member, const std::vector<std::string>& words) {
    for (std::size_t index = 0; index < words.size(); ++index) {
        lines.emplace_back(Indexed(stem, index, words[index]), At(member, index), index);
    }
}

/// A level and a phase for every index; the phase is read as a number and written as a word.
template <class Levels, class Phases>
void AddLevelsAndPhases(AudioLines& lines, const std::string& stem, Levels Audio::*level, Phases Audio::*phase,
                        std::size_t count) {
    for (std::size_t index = 0; index < count; ++index) {
        const bool odd = index % 2 != 0;
        lines.emplace_back(Indexed(stem + "Level", index, std::to_string(index)), At(level, index), index);
        lines.emplace_back(Indexed(stem + "Phase", index, odd ? "1" : "0"), At(phase, index), odd,
                           Indexed(stem + "Phase", index, odd ? "true" : "false"));
    }
}

GoldenBlock<Audio> Table() {
    AudioLines lines;
    // clang-format off
    AddWords(lines, "AudioOut", &Audio::audioOut, {
        "AudioIn1", "AudioIn2", "AudioIn3", "AudioIn4", "AudioIn5", "AudioIn6", "AudioIn7", "AudioIn8", "AudioIn9",
        "AudioIn10", "AudioIn11", "AudioIn12", "AudioIn13", "AudioIn14", "AudioIn15", "AudioIn16"});
    AddWords(lines, "AudioEncode", &Audio::audioEncode, {
        "AudioIn1", "AudioIn2", "AudioIn3", "AudioIn4", "AudioIn5", "AudioIn6", "AudioIn7", "AudioIn8"});
    AddWords(lines, "AudioInPair", &Audio::audioInPair, {
        "EmbedPair1", "EmbedPair2", "EmbedPair3", "EmbedPair4", "EmbedPair5", "EmbedPair6", "EmbedPair7",
        "EmbedPair8"});
    AddLevelsAndPhases(lines, "AudioIn", &Audio::audioInLevel, &Audio::audioInPhase, 16);
    AddLevelsAndPhases(lines, "AudioDD", &Audio::audioDDLevel, &Audio::audioDDPhase, 8);
    AddNumbers(lines, "AudioUserDelay", &Audio::audioUserDelay, 8);
    lines.insert(lines.end(), {
        {"AES output select: true",              &Audio::aesOutputSelect,     true},
        {"Analog input ref level: -18",          &Audio::analogInputRefLevel, -18},
        {"Metadata source: PassThrough",         &Audio::metadataSource,      2},
        {"Metadata channel mode: Mode32",        &Audio::metadataChannelMode, 7},
        {"Metadata drc profile: Speech",         &Audio::metadataDrcProfile,  5},
        {"Metadata lfe select: false",           &Audio::metadataLfeSelect,   false},
        {"Metadata dialog level: -27",           &Audio::metadataDialogLevel, -27},
        {"Audio meter channels: MeterChan15&16", &Audio::audioMeterChannels,  morquilAudMeterChannels_15_16},
        {"ResetValues: 7",                       &Audio::resetValues,         7U}});
    // clang-format on
    return {audioHeader, lines};
}

const GoldenBlock<Audio> audio = Table();

// clang-format off
const GoldenBlock<AudioAvailable> audioAvailable{"AUDIO AVAILABILITY", {
    {"Audio level range: -60 12",           &AudioAvailable::audioLevelRange,          Limits32{-60, 12}},
    {"Analog input ref level range: 0 24",  &AudioAvailable::analogInputRefLevelRange, Limits32{0, 24}},
    {"Analog delay range: -100 1000",       &AudioAvailable::analogDelayRange,         Limits32{-100, 1000}},
    {"Audio selections: AudioIn1 AudioIn16 DolbyE2 TTMute", &AudioAvailable::audioSelections, Members(0, 15, 25, 30)}}};
// clang-format on

TEST(AudioBlock, ReadsAndWritesEveryLine) {
    audio.ExpectReadsAndWritesEveryLine();
}

TEST(AudioBlock, WritesItsLinesInOrder) {
    audio.ExpectWritesItsLinesInOrder();
}

TEST(AudioBlock, ReadsEachVocabularyToItsEnd) {
    const std::string lines = "AudioOut15: TTMute\nAudioEncode7: DolbyE2\nAudioInPair7: MutePair";
    EXPECT_EQ(WrittenBack<Audio>(audioHeader, lines), BlockOf(audioHeader, lines));
}

TEST(AudioBlock, ReportsBadWordsUnderTheWholeKey) {
    audio.ExpectReports({
        // clang-format off
        {"AudioOut15: In1",          "Received invalid Audio Select Input Source AudioOut15 string \"In1\"\n"},
        {"AudioEncode7: In1",        "Received invalid Audio Encode Source AudioEncode7 string \"In1\"\n"},
        {"AudioInPair3: AudioIn1",   "Received invalid Audio Input Pair Source AudioInPair3 string \"AudioIn1\"\n"},
        {"Metadata source: Off",     "Failed to parse Metadata source string \"Off\"\n"},
        {"Metadata channel mode: 5", "Failed to parse Metadata channel mode string \"5\"\n"},
        {"Metadata drc profile: 5",  "Failed to parse Metadata drc profile string \"5\"\n"},
        {"Audio meter channels: 1",  "Failed to parse Audio meter channels string \"1\"\n"},
        // clang-format on
    });
}

TEST(AudioBlock, ReportsBadValuesUnderTheWholeKey) {
    for (const char* const key :
         {"AudioInLevel15", "AudioInPhase15", "AudioDDLevel7", "AudioDDPhase7", "AudioUserDelay7", "AES output select",
          "Analog input ref level", "Metadata lfe select", "Metadata dialog level", "ResetValues"}) {
        audio.ExpectReports({NotAValue(key, "x")});
    }
}

TEST(AudioBlock, HasNoKeyBeyondTheLastIndex) {
    for (const std::string key : {"AudioOut16", "AudioEncode8", "AudioInPair8", "AudioInLevel16", "AudioInPhase16",
                                  "AudioDDLevel8", "AudioDDPhase8", "AudioUserDelay8"}) {
        audio.ExpectReports({{key + ": 1", "Unknown Audio line \"" + key + "\"\n"}});
    }
}

TEST(AudioBlock, ReportsUnknownKeys) {
    for (const std::string key : {"AudioOut", "AudioOut01", "AudioOut-1", "Volume", "AES output select1"}) {
        audio.ExpectReports({{key + ": 1", "Unknown Audio line \"" + key + "\"\n"}});
    }
}

TEST(AudioBlock, ReadsEveryNumberButZeroAsAnInvertedPhase) {
    EXPECT_EQ(WrittenBack<Audio>(audioHeader, "AudioInPhase0: 1\nAudioInPhase1: -7\nAudioDDPhase0: 0"),
              "AUDIO:\nAudioInPhase0: true\nAudioInPhase1: true\nAudioDDPhase0: false\n\n");
}

TEST(AudioBlock, DoesNotReadThePhaseThatItWrites) {
    audio.ExpectReports({NotAValue("AudioInPhase0", "true"), NotAValue("AudioDDPhase0", "false")});
}

TEST(AudioBlock, WritesTheProgramConfigurationBeforeTheMeterChannels) {
    Audio set;
    set.metadataProgramConfig.Set(6);
    set.metadataDialogLevel.Set(-27);
    set.audioMeterChannels.Set(0);
    EXPECT_EQ(BlockText<Audio>(set),
              "AUDIO:\nMetadata dialog level: -27\nMetadata program config: ProgCfg4x2\n"
              "Audio meter channels: MeterChan1&2\n\n");
}

TEST(AudioBlock, DoesNotReadTheProgramConfigurationThatItWrites) {
    audio.ExpectReports({{"Metadata program config: ProgCfg4x2", "Unknown Audio line \"Metadata program config\"\n"}});
}

TEST(AudioBlock, WritesTheResetValuesInSignedNotation) {
    EXPECT_EQ(WrittenBack<Audio>(audioHeader, "ResetValues: 4294967295"), "AUDIO:\nResetValues: -1\n\n");
}

TEST(AudioAvailabilityBlock, ReadsAndWritesEveryLine) {
    audioAvailable.ExpectReadsAndWritesEveryLine();
}

TEST(AudioAvailabilityBlock, WritesItsLinesInOrder) {
    audioAvailable.ExpectWritesItsLinesInOrder();
}

TEST(AudioAvailabilityBlock, ReportsBadRangesAndUnknownKeys) {
    audioAvailable.ExpectReports({NotARange("Audio level range", "1"),
                                  NotARange("Analog input ref level range", "x"),
                                  NotARange("Analog delay range", "1 x"),
                                  {"Audio level: 1", "Unknown supported audio avail line \"Audio level\"\n"}});
}

TEST(AudioAvailabilityBlock, WritesTheDialogLevelRangeBetweenTheRangesAndTheSelections) {
    AudioAvailable set;
    set.metadataDialogLevelRange.Set({-31, -1});
    set.audioSelections.Add(morquilAudSelMute);
    set.analogDelayRange.Set({0, 10});
    EXPECT_EQ(BlockText<AudioAvailable>(set),
              "AUDIO AVAILABILITY:\nAnalog delay range: 0 10\nMetadata dialog level range: -31 -1\n"
              "Audio selections: TTMute\n\n");
}

TEST(AudioAvailabilityBlock, DoesNotReadTheDialogLevelRangeThatItWrites) {
    audioAvailable.ExpectReports({{"Metadata dialog level range: -31 -1",
                                   "Unknown supported audio avail line \"Metadata dialog level range\"\n"}});
}

}  // namespace
}  // namespace Morquil
