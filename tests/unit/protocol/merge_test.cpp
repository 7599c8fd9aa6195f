#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "protocol/blocks/all.h"
#include "tests/unit/protocol/recording_sink.h"

namespace Morquil {
namespace {

/// The change set of a block with these lines.
template <class Set>
Set SetOf(const std::string& header, const std::string& lines) {
    RecordedParser recorded;
    recorded.Feed(header + ":\n" + lines + "\n\n");
    EXPECT_EQ(recorded.sink.Errors(), RecordingSink::Events()) << lines;
    return recorded.sink.Last<Set>();
}

GenlockChangeSet Genlock(const std::string& lines) {
    return SetOf<GenlockChangeSet>("GENLOCK", lines);
}

template <class Set>
void ExpectText(const Set& set, const std::string& header, const std::string& lines) {
    EXPECT_EQ(BlockText<Set>(set), header + ":\n" + lines + "\n\n");
}

TEST(Merge, CopiesWhatTheTargetLacks) {
    GenlockChangeSet target = Genlock("Line offset: 1");
    EXPECT_TRUE(Merge(target, Genlock("Pixel offset: 2")));
    ExpectText(target, "GENLOCK", "Line offset: 1\nPixel offset: 2");
}

TEST(Merge, CopiesWhatDiffersInTheTarget) {
    GenlockChangeSet target = Genlock("Line offset: 1\nPixel offset: 2");
    EXPECT_TRUE(Merge(target, Genlock("Line offset: 3")));
    ExpectText(target, "GENLOCK", "Line offset: 3\nPixel offset: 2");
}

TEST(Merge, ChangesNothingWithWhatTheTargetHolds) {
    GenlockChangeSet target = Genlock("Line offset: 1\nPixel offset: 2");
    EXPECT_FALSE(Merge(target, Genlock("Pixel offset: 2")));
    ExpectText(target, "GENLOCK", "Line offset: 1\nPixel offset: 2");
}

TEST(Merge, ChangesNothingWithAnEmptySet) {
    GenlockChangeSet target = Genlock("Line offset: 1");
    EXPECT_FALSE(Merge(target, GenlockChangeSet()));
    ExpectText(target, "GENLOCK", "Line offset: 1");
}

TEST(Merge, ChangesNothingWithTheTargetItself) {
    GenlockChangeSet target = Genlock("Type: Input\nLine offset: 1\nSignal locked: true");
    EXPECT_FALSE(Merge(target, target));
}

TEST(Merge, CopiesAValueThatEqualsTheNumberOfAnAbsentField) {
    GenlockChangeSet target;
    EXPECT_TRUE(Merge(target, Genlock("Line offset: 0")));
    EXPECT_TRUE(target.lineOffset.IsPresent());
    NoiseReductionChangeSet noise;
    EXPECT_TRUE(Merge(noise, SetOf<NoiseReductionChangeSet>("NOISE REDUCTION", "Enabled: false")));
    EXPECT_TRUE(noise.enabled.IsPresent());
}

TEST(Merge, LeavesAWordAloneThatTheSourceLacks) {
    VideoOutputChangeSet target =
        SetOf<VideoOutputChangeSet>("VIDEO OUTPUT", "Video mode: 720p50\nTransition setting: 5");
    EXPECT_FALSE(Merge(target, VideoOutputChangeSet()));
    EXPECT_FALSE(Merge(target, SetOf<VideoOutputChangeSet>("VIDEO OUTPUT", "Transition setting: -1")));
    ExpectText(target, "VIDEO OUTPUT", "Video mode: 720p50\nTransition setting: 5");
}

TEST(Merge, AlwaysCountsANumberThatIsNotANumberAsChanged) {
    VariableAspectRatioChangeSet target;
    target.sizeXLeft.Set(std::numeric_limits<double>::quiet_NaN());
    EXPECT_TRUE(Merge(target, target));
    VariableAspectRatioChangeSet number;
    number.sizeXLeft.Set(1.5);
    EXPECT_TRUE(Merge(number, target));
    number.sizeXLeft.Set(1.5);
    EXPECT_TRUE(Merge(target, number));
    EXPECT_FALSE(Merge(target, number));
}

TEST(Merge, AlwaysCountsARangeThatIsNotANumberAsChanged) {
    VariableAspectRatioAvailabilityChangeSet target;
    target.posXRange.Set({0, std::numeric_limits<double>::quiet_NaN()});
    EXPECT_TRUE(Merge(target, target));
}

TEST(Merge, ComparesBothEndsOfARange) {
    using Set = NoiseReductionAvailabilityChangeSet;
    Set target = SetOf<Set>("NOISE REDUCTION AVAILABILITY", "Bias range: -1 1");
    EXPECT_FALSE(Merge(target, SetOf<Set>("NOISE REDUCTION AVAILABILITY", "Bias range: -1 1")));
    EXPECT_TRUE(Merge(target, SetOf<Set>("NOISE REDUCTION AVAILABILITY", "Bias range: -2 1")));
    EXPECT_TRUE(Merge(target, SetOf<Set>("NOISE REDUCTION AVAILABILITY", "Bias range: -2 2")));
}

TEST(Merge, ComparesFriendlyAndPresetNamesWhateverTheirCase) {
    auto network = SetOf<NetworkConfigChangeSet>("NETWORK CONFIG", "Friendly name: Rack");
    EXPECT_FALSE(Merge(network, SetOf<NetworkConfigChangeSet>("NETWORK CONFIG", "Friendly name: RACK")));
    ExpectText(network, "NETWORK CONFIG", "Friendly name: Rack");
    auto preset = SetOf<PresetChangeSet>("PRESET", "PresetName0: News");
    EXPECT_FALSE(Merge(preset, SetOf<PresetChangeSet>("PRESET", "PresetName0: nEWS")));
    ExpectText(preset, "PRESET", "PresetName0: News");
}

TEST(Merge, ComparesOtherNamesByTheirLetters) {
    auto device = SetOf<MorquilDeviceChangeSet>("MORQUIL DEVICE", "Model name: Rack");
    EXPECT_TRUE(Merge(device, SetOf<MorquilDeviceChangeSet>("MORQUIL DEVICE", "Model name: RACK")));
    auto names = SetOf<DeviceFilenamesChangeSet>("DEVICE FILENAMES", "Still frame name: Logo");
    EXPECT_TRUE(Merge(names, SetOf<DeviceFilenamesChangeSet>("DEVICE FILENAMES", "Still frame name: LOGO")));
    EXPECT_FALSE(Merge(names, SetOf<DeviceFilenamesChangeSet>("DEVICE FILENAMES", "Still frame name: LOGO")));
}

TEST(Merge, ComparesProtocolVersionsByBothNumbers) {
    using Set = ProtocolPreambleChangeSet;
    Set target = SetOf<Set>("PROTOCOL PREAMBLE", "Version: 2.22");
    EXPECT_FALSE(Merge(target, SetOf<Set>("PROTOCOL PREAMBLE", "Version: 2.22")));
    EXPECT_TRUE(Merge(target, SetOf<Set>("PROTOCOL PREAMBLE", "Version: 2.21")));
    EXPECT_TRUE(Merge(target, SetOf<Set>("PROTOCOL PREAMBLE", "Version: 0.21")));
}

TEST(Merge, ReplacesAListByTheReceivedOne) {
    using Set = VideoInputAvailabilityChangeSet;
    Set target = SetOf<Set>("VIDEO INPUT AVAILABILITY", "Video sources: SDI1 HDMI\nAudio sources: AES");
    EXPECT_TRUE(Merge(target, SetOf<Set>("VIDEO INPUT AVAILABILITY", "Video sources: SDI2")));
    ExpectText(target, "VIDEO INPUT AVAILABILITY", "Video sources: SDI2\nAudio sources: AES");
}

TEST(Merge, ReplacesAListByOneWithoutAnyKnownWord) {
    using Set = VideoInputAvailabilityChangeSet;
    Set target = SetOf<Set>("VIDEO INPUT AVAILABILITY", "Audio sources: AES");
    EXPECT_TRUE(Merge(target, SetOf<Set>("VIDEO INPUT AVAILABILITY", "Audio sources: XLR")));
    EXPECT_TRUE(target.audioSources.IsPresent());
    EXPECT_FALSE(target.audioSources.HasAny());
}

TEST(Merge, CountsTheFirstEmptyListAsChanged) {
    using Set = VideoInputAvailabilityChangeSet;
    Set target;
    const Set received = SetOf<Set>("VIDEO INPUT AVAILABILITY", "Audio sources: XLR");
    EXPECT_TRUE(Merge(target, received));
    EXPECT_FALSE(Merge(target, received));
}

TEST(Merge, ReplacesTheTableOfConversions) {
    using Set = SupportedConversionsChangeSet;
    const std::string header = "SUPPORTED CONVERSIONS";
    Set target = SetOf<Set>(header, "Input: 720p50\nOutput: 720p50\nAspect ratio: Smart");
    const Set received = SetOf<Set>(header, "Input: 720p60\nOutput: 720p60\nAspect ratio: 14x9");
    EXPECT_TRUE(Merge(target, received));
    EXPECT_FALSE(Merge(target, received));
    ExpectText(target, header, "Input: 720p60\nOutput: 720p60\nAspect ratio: 14x9");
}

TEST(Merge, MergesTheRangesOfModesOneByOne) {
    using Set = GenlockAvailabilityChangeSet;
    const std::string first = "Video mode: 720p50\nLine offset range: 1 2\nPixel offset range: 3 4";
    const std::string second = "Video mode: 720p60\nLine offset range: 5 6\nPixel offset range: 7 8";
    Set target = SetOf<Set>("GENLOCK AVAILABILITY", first);
    EXPECT_TRUE(Merge(target, SetOf<Set>("GENLOCK AVAILABILITY", second)));
    ExpectText(target, "GENLOCK AVAILABILITY", first + "\n" + second);
}

TEST(Merge, MergesTheListsOfModesOneByOne) {
    using Set = Mode3DAvailabilityChangeSet;
    Set target = SetOf<Set>("MODE3D AVAILABILITY", "Input: 720p50\nOutput: 720p50\nInput: 720p60\nOutput: 720p60");
    EXPECT_TRUE(Merge(target, SetOf<Set>("MODE3D AVAILABILITY", "Input: 720p60\nOutput: 1080i60")));
    ExpectText(target, "MODE3D AVAILABILITY", "Input: 720p50\nOutput: 720p50\nInput: 720p60\nOutput: 1080i60");
}

TEST(Merge, MergesDropFrameModesAndLineRangesOneByOne) {
    using Set = AncillaryDataAvailabilityChangeSet;
    const std::string header = "ANCILLARY DATA AVAILABILITY";
    Set target = SetOf<Set>(header,
                            "Output: 720p50\nTimecode drop frame modes: NDF\n"
                            "Timecode frame height: 720\nTimecode line range: 1 2");
    EXPECT_TRUE(Merge(target, SetOf<Set>(header,
                                         "Output: 720p60\nTimecode drop frame modes: DF\n"
                                         "Timecode frame height: 1080\nTimecode line range: 3 4")));
    ExpectText(target, header,
               "Output: 720p50\nTimecode drop frame modes: NDF\nOutput: 720p60\nTimecode drop frame modes: DF\n"
               "Timecode frame height: 720\nTimecode line range: 1 2\n"
               "Timecode frame height: 1080\nTimecode line range: 3 4");
}

TEST(Merge, MergesIndexedKeysOneByOne) {
    auto audio = SetOf<AudioChangeSet>("AUDIO", "AudioOut0: TT750\nAudioInLevel3: 5");
    EXPECT_TRUE(Merge(audio, SetOf<AudioChangeSet>("AUDIO", "AudioOut1: TT1500\nAudioInLevel3: 6")));
    ExpectText(audio, "AUDIO", "AudioOut0: TT750\nAudioOut1: TT1500\nAudioInLevel3: 6");
}

TEST(Merge, CopiesWriteOnlyKeys) {
    AlignChangeSet waiting;
    AlignChangeSet later;
    later.resetValues.Set(1);
    EXPECT_TRUE(Merge(waiting, later));
    EXPECT_TRUE(waiting.resetValues.IsPresent());
}

TEST(Merge, KeepsAPendingResetBesideALaterValue) {
    VideoProcAmpChangeSet waiting;
    waiting.reset.Set(true);
    EXPECT_TRUE(Merge(waiting, SetOf<VideoProcAmpChangeSet>("VIDEO PROC AMP", "Gain: 5")));
    ExpectText(waiting, "VIDEO PROC AMP", "Gain: 5\nReset: true");
}

TEST(Overwrite, CopiesANameThatDiffersOnlyInLetterCase) {
    auto preset = SetOf<PresetChangeSet>("PRESET", "PresetName0: News\nPresetName1: Sport");
    Overwrite(preset, SetOf<PresetChangeSet>("PRESET", "PresetName0: nEWS"));
    ExpectText(preset, "PRESET", "PresetName0: nEWS\nPresetName1: Sport");
}

TEST(Overwrite, CopiesWhatTheTargetLacksAndLeavesWhatTheSourceLacks) {
    GenlockChangeSet target = Genlock("Line offset: 1\nPixel offset: 2");
    Overwrite(target, Genlock("Type: Input\nLine offset: 3"));
    ExpectText(target, "GENLOCK", "Type: Input\nLine offset: 3\nPixel offset: 2");
}

TEST(Overwrite, LeavesAWordAloneThatTheSourceLacks) {
    const std::string lines = "Video mode: 720p50\nTransition setting: 5";
    auto target = SetOf<VideoOutputChangeSet>("VIDEO OUTPUT", lines);
    Overwrite(target, SetOf<VideoOutputChangeSet>("VIDEO OUTPUT", "Transition setting: -1"));
    ExpectText(target, "VIDEO OUTPUT", lines);
}

TEST(Clear, MakesEveryFieldAbsent) {
    auto output = SetOf<VideoOutputChangeSet>("VIDEO OUTPUT",
                                              "Video mode: 720p50\nTransition setting: 5\nStill frame present: true");
    Clear(output);
    EXPECT_TRUE(IsEmpty(output));
    EXPECT_EQ(output.videoMode.Get(), 34);
    EXPECT_EQ(output.transitionSetting.Get(), -1);
    EXPECT_FALSE(output.stillFramePresent.IsPresent());
}

TEST(ReservedField, IsAbsentWhileItHoldsItsReservedValue) {
    ReservedField<std::int32_t, -1> field;
    EXPECT_FALSE(field.IsPresent());
    field.Set(0);
    EXPECT_TRUE(field.IsPresent());
    field.Set(-1);
    EXPECT_FALSE(field.IsPresent());
    field.Set(5);
    field.Clear();
    EXPECT_EQ(field.Get(), -1);
}

TEST(ReservedField, IsAbsentAtTheNumberOfItsWords) {
    EXPECT_EQ(WordField<VideoModes>().Get(), 34);
    EXPECT_EQ(WordField<VideoSources>().Get(), 7);
    EXPECT_EQ(WordField<Modes3D>().Get(), 4);
    EXPECT_EQ(WordField<AudioSelections>().Get(), 31);
}

}  // namespace
}  // namespace Morquil
