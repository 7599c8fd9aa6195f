#include "protocol/words/vocabularies.h"

#include <gtest/gtest.h>

#include <cstddef>

#include "tests/unit/protocol/expected_words.h"

namespace Morquil {
namespace {

using Testing::ExpectWords;

// clang-format off
TEST(AspectRatios, HaveTheirValues) {
    ExpectWords<AspectRatios>({
        {morquilAPIAspectRatioAnamorphic, "Anamorphic"},
        {morquilAPIAspectRatio14x9,       "14x9"},
        {morquilAPIAspectRatioLetterBox,  "LetterBox"},
        {morquilAPIAspectRatioCentreCut,  "CentreCut"},
        {morquilAPIAspectRatioSmart,      "Smart"}});
}

TEST(VideoSources, HaveTheirValues) {
    ExpectWords<VideoSources>({
        {morquilAPIVideoSourceSDI1,      "SDI1"},
        {morquilAPIVideoSourceHDMI,      "HDMI"},
        {morquilAPIVideoSourceComponent, "Component"},
        {morquilAPIVideoSourceComposite, "Composite"},
        {morquilAPIVideoSourceSVideo,    "SVideo"},
        {morquilAPIVideoSourceFiberOpt,  "Optical"},
        {morquilAPIVideoSourceSDI2,      "SDI2"}});
}

TEST(AudioSources, HaveTheirValues) {
    ExpectWords<AudioSources>({
        {morquilAPIAudioSourceEmbedded, "Embedded"},
        {morquilAPIAudioSourceAES,      "AES"},
        {morquilAPIAudioSourceRCA,      "RCA"},
        {morquilAPIAudioSourceDB25,     "DB25"}});
}

TEST(PixelFormats, HaveTheirValues) {
    ExpectWords<PixelFormats>({
        {morquilAPIPixelFormat422,      "YCbCr422"},
        {morquilAPIPixelFormat444YCbCr, "YCbCr444"},
        {morquilAPIPixelFormat444RGB,   "RGB444"}});
}

TEST(PCIeModes, HaveTheirValues) {
    ExpectWords<PCIeModes>({
        {morquilAPIPCIeNone,     "None"},
        {morquilAPIPCIeCapture,  "Capture"},
        {morquilAPIPCIePlayback, "Playback"}});
}

TEST(DemuxModes, HaveTheirValues) {
    ExpectWords<DemuxModes>({
        {morquilAPIDemuxSingleLink, "SingleLink"},
        {morquilAPIDemuxDualLink,   "DualLink"},
        {morquilAPIDemuxQuadLink,   "QuadLink"}});
}

TEST(SdiLevels, HaveTheirValues) {
    ExpectWords<SdiLevels>({
        {morquilAPISDIModeLevelA, "LevelA"},
        {morquilAPISDIModeLevelB, "LevelB"}});
}

TEST(QuadSdiOutputs, HaveTheirValues) {
    ExpectWords<QuadSdiOutputs>({
        {morquilAPIQuadSDIOutputLink,    "QuadLink"},
        {morquilAPIQuadSDIOutputHDSplit, "QuadHDSplit"}});
}

TEST(OutputOptions, HaveTheirValues) {
    ExpectWords<OutputOptions>({
        {morquilAPIOutputOptionInput,  "Input"},
        {morquilAPIOutputOptionBlack,  "Black"},
        {morquilAPIOutputOptionStill,  "Still"},
        {morquilAPIOutputOptionFreeze, "Freeze"}});
}

TEST(StillFrameActions, HaveTheirValues) {
    ExpectWords<StillFrameActions>({
        {morquilAPIStillFrameDelete,  "Delete"},
        {morquilAPIStillFrameCapture, "Capture"},
        {morquilAPIStillFramePreview, "Preview"}});
}

TEST(TimecodePresence, HaveTheirValues) {
    ExpectWords<TimecodePresence>({
        {morquilAPITimecodeNone,     "None"},
        {morquilAPITimecodeDetected, "Detected"}});
}

TEST(ClosedCaptionPresence, HaveTheirValues) {
    ExpectWords<ClosedCaptionPresence>({
        {morquilAPIClosedCaptionNone,     "None"},
        {morquilAPIClosedCaptionDetected, "Detected"}});
}

TEST(TestPatterns, HaveTheirValues) {
    ExpectWords<TestPatterns>({
        {morquilAPITestPatternNone,       "None"},
        {morquilAPITestPatternSmpteBars,  "SMPTEBars"},
        {morquilAPITestPatternBars,       "Bars"},
        {morquilAPITestPatternBlack,      "Black"},
        {morquilAPITestPatternGrid,       "Grid"},
        {morquilAPITestPatternMultiburst, "Multiburst"}});
}

TEST(TestTones, HaveTheirValues) {
    ExpectWords<TestTones>({
        {morquilAPITestToneNone,   "None"},
        {morquilAPITestTone750Hz,  "Tone750Hz"},
        {morquilAPITestTone1500Hz, "Tone1500Hz"},
        {morquilAPITestTone3KHz,   "Tone3KHz"},
        {morquilAPITestTone6KHz,   "Tone6KHz"}});
}

TEST(SourceTypes, HaveTheirValues) {
    ExpectWords<SourceTypes>({
        {morquilAPISourceTypeAuto,  "Auto"},
        {morquilAPISourceTypeVideo, "Video"},
        {morquilAPISourceTypeFilm,  "Film"}});
}

TEST(FrcApertures, HaveTheirValues) {
    ExpectWords<FrcApertures>({
        {morquilAPIFrcAperture0, "0"},
        {morquilAPIFrcAperture1, "1"},
        {morquilAPIFrcAperture2, "2"},
        {morquilAPIFrcAperture3, "3"}});
}

TEST(ProcessingModes, HaveTheirValues) {
    ExpectWords<ProcessingModes>({
        {morquilAPIProcModeNormal, "Highest Quality"},
        {morquilAPIProcModeSimple, "Lowest Latency"}});
}

TEST(TimecodeModes, HaveTheirValues) {
    ExpectWords<TimecodeModes>({
        {morquilAPITimecodeModeOff,        "Off"},
        {morquilAPITimecodeModeInput,      "Input"},
        {morquilAPITimecodeModeInputRegen, "InputRegen"},
        {morquilAPITimecodeModeGenerator,  "Generate"},
        {morquilAPITimecodeModeJamSync,    "JamSync"}});
}

TEST(TimecodeDropFrameModes, HaveTheirValues) {
    ExpectWords<TimecodeDropFrameModes>({
        {morquilAPITimecodeDropFrameModeAuto, "Auto"},
        {morquilAPITimecodeDropFrameModeDF,   "DF"},
        {morquilAPITimecodeDropFrameModeNDF,  "NDF"}});
}

TEST(TimecodeSources, HaveTheirValues) {
    ExpectWords<TimecodeSources>({
        {morquilAPITimecodeSourceVITC, "VITC"},
        {morquilAPITimecodeSourceLTC,  "LTC"}});
}

TEST(TimecodeLossModes, HaveTheirValues) {
    ExpectWords<TimecodeLossModes>({
        {morquilAPITimecodeLossModeContinue, "Continue"},
        {morquilAPITimecodeLossModeStop,     "Stop"}});
}

TEST(TimecodeStartSources, HaveTheirValues) {
    ExpectWords<TimecodeStartSources>({
        {morquilAPITimecodeStartSourceFromUser,  "User"},
        {morquilAPITimecodeStartSourceFromInput, "Input"}});
}

TEST(IndexReactions, HaveTheirValues) {
    ExpectWords<IndexReactions>({
        {morquilAPIVideoIndexReactionOff, "Off"},
        {morquilAPIVideoIndexReactionAFD, "On"}});
}

TEST(AfdInsertTypes, HaveTheirValues) {
    ExpectWords<AfdInsertTypes>({
        {morquilAPIAFDInsertTypeOff,    "Off"},
        {morquilAPIAFDInsertTypeAuto,   "Auto"},
        {morquilAPIAFDInsertTypeBypass, "Bypass"},
        {morquilAPIAFDInsertType0,      "0000"},
        {morquilAPIAFDInsertType1,      "0001"},
        {morquilAPIAFDInsertType2,      "0010"},
        {morquilAPIAFDInsertType3,      "0011"},
        {morquilAPIAFDInsertType4,      "0100"},
        {morquilAPIAFDInsertType5,      "0101"},
        {morquilAPIAFDInsertType6,      "0110"},
        {morquilAPIAFDInsertType7,      "0111"},
        {morquilAPIAFDInsertType8,      "1000"},
        {morquilAPIAFDInsertType9,      "1001"},
        {morquilAPIAFDInsertTypeA,      "1010"},
        {morquilAPIAFDInsertTypeB,      "1011"},
        {morquilAPIAFDInsertTypeC,      "1100"},
        {morquilAPIAFDInsertTypeD,      "1101"},
        {morquilAPIAFDInsertTypeE,      "1110"},
        {morquilAPIAFDInsertTypeF,      "1111"}});
}

TEST(CcService2Sources, HaveTheirValues) {
    ExpectWords<CcService2Sources>({
        {morquilAPICCServiceSourceCC2, "CC2"},
        {morquilAPICCServiceSourceCC3, "CC3"}});
}

TEST(CcLanguages, HaveTheirValues) {
    ExpectWords<CcLanguages>({
        {morquilAPICCServiceLanguageEnglish, "English"},
        {morquilAPICCServiceLanguageFrench,  "French"},
        {morquilAPICCServiceLanguageGerman,  "German"},
        {morquilAPICCServiceLanguageItalian, "Italian"},
        {morquilAPICCServiceLanguageSpanish, "Spanish"}});
}

TEST(ReferenceTypes, HaveTheirValues) {
    ExpectWords<ReferenceTypes>({
        {morquilAPIVideoReferenceTypeInput,    "Input"},
        {morquilAPIVideoReferenceTypeInternal, "Internal"},
        {morquilAPIVideoReferenceTypeExternal, "External"}});
}

TEST(GenReferences, HaveTheirValues) {
    ExpectWords<GenReferences>({
        {morquilAPIGenReferenceBlackburst, "Blackburst"},
        {morquilAPIGenReferenceTriLevel,   "TriLevel"}});
}

TEST(AudioSelections, HaveTheirValues) {
    ExpectWords<AudioSelections>({
        {morquilAudSelIn1,        "AudioIn1"},
        {morquilAudSelIn2,        "AudioIn2"},
        {morquilAudSelIn3,        "AudioIn3"},
        {morquilAudSelIn4,        "AudioIn4"},
        {morquilAudSelIn5,        "AudioIn5"},
        {morquilAudSelIn6,        "AudioIn6"},
        {morquilAudSelIn7,        "AudioIn7"},
        {morquilAudSelIn8,        "AudioIn8"},
        {morquilAudSelIn9,        "AudioIn9"},
        {morquilAudSelIn10,       "AudioIn10"},
        {morquilAudSelIn11,       "AudioIn11"},
        {morquilAudSelIn12,       "AudioIn12"},
        {morquilAudSelIn13,       "AudioIn13"},
        {morquilAudSelIn14,       "AudioIn14"},
        {morquilAudSelIn15,       "AudioIn15"},
        {morquilAudSelIn16,       "AudioIn16"},
        {morquilAudSelDolbyD1,    "DolbyD1"},
        {morquilAudSelDolbyD2,    "DolbyD2"},
        {morquilAudSelDolbyD3,    "DolbyD3"},
        {morquilAudSelDolbyD4,    "DolbyD4"},
        {morquilAudSelDolbyD5,    "DolbyD5"},
        {morquilAudSelDolbyD6,    "DolbyD6"},
        {morquilAudSelDolbyD7,    "DolbyD7"},
        {morquilAudSelDolbyD8,    "DolbyD8"},
        {morquilAudSelDolbyE1,    "DolbyE1"},
        {morquilAudSelDolbyE2,    "DolbyE2"},
        {morquilAudSelTone750Hz,  "TT750"},
        {morquilAudSelTone1500Hz, "TT1500"},
        {morquilAudSelTone3kHz,   "TT3000"},
        {morquilAudSelTone6kHz,   "TT6000"},
        {morquilAudSelMute,       "TTMute"}});
}

TEST(AudioInputPairs, HaveTheirValues) {
    ExpectWords<AudioInputPairs>({
        {morquilAudInSrcEmbedPair1, "EmbedPair1"},
        {morquilAudInSrcEmbedPair2, "EmbedPair2"},
        {morquilAudInSrcEmbedPair3, "EmbedPair3"},
        {morquilAudInSrcEmbedPair4, "EmbedPair4"},
        {morquilAudInSrcEmbedPair5, "EmbedPair5"},
        {morquilAudInSrcEmbedPair6, "EmbedPair6"},
        {morquilAudInSrcEmbedPair7, "EmbedPair7"},
        {morquilAudInSrcEmbedPair8, "EmbedPair8"},
        {morquilAudInSrcAESPair1,   "AESPair1"},
        {morquilAudInSrcAESPair2,   "AESPair2"},
        {morquilAudInSrcAESPair3,   "AESPair3"},
        {morquilAudInSrcAESPair4,   "AESPair4"},
        {morquilAudInSrcDB25Pair1,  "DB25Pair1"},
        {morquilAudInSrcDB25Pair2,  "DB25Pair2"},
        {morquilAudInSrcRCAPair,    "RCAPair"},
        {morquilAudInSrcMutePair,   "MutePair"}});
}

TEST(MeterChannels, HaveTheirValues) {
    ExpectWords<MeterChannels>({
        {morquilAudMeterChannels_1_2,   "MeterChan1&2"},
        {morquilAudMeterChannels_3_4,   "MeterChan3&4"},
        {morquilAudMeterChannels_5_6,   "MeterChan5&6"},
        {morquilAudMeterChannels_7_8,   "MeterChan7&8"},
        {morquilAudMeterChannels_9_10,  "MeterChan9&10"},
        {morquilAudMeterChannels_11_12, "MeterChan11&12"},
        {morquilAudMeterChannels_13_14, "MeterChan13&14"},
        {morquilAudMeterChannels_15_16, "MeterChan15&16"}});
}

TEST(DolbyChannelModes, HaveTheirValues) {
    ExpectWords<DolbyChannelModes>({
        {0, "Reserved"},
        {1, "Mode10"},
        {2, "Mode20"},
        {3, "Mode30"},
        {4, "Mode21"},
        {5, "Mode31"},
        {6, "Mode22"},
        {7, "Mode32"}});
}

TEST(DolbyDrcProfiles, HaveTheirValues) {
    ExpectWords<DolbyDrcProfiles>({
        {0, "None"},
        {1, "FilmStd"},
        {2, "FilmLight"},
        {3, "MusicStd"},
        {4, "MusicLight"},
        {5, "Speech"}});
}

TEST(DolbyProgramConfigs, HaveTheirValues) {
    ExpectWords<DolbyProgramConfigs>({
        {0, "ProgCfg51_2"},
        {1, "ProgCfg51_2x1"},
        {2, "ProgCfg4_4"},
        {3, "ProgCfg4_2x2"},
        {4, "ProgCfg4_2_2x1"},
        {5, "ProgCfg4_4x1"},
        {6, "ProgCfg4x2"}});
}

TEST(DolbyMetadataSources, HaveTheirValues) {
    ExpectWords<DolbyMetadataSources>({
        {0, "External"},
        {1, "User"},
        {2, "PassThrough"}});
}

TEST(Modes3D, HaveTheirValues) {
    ExpectWords<Modes3D>({
        {morquilAPI3dModeOff,     "3DModeOff"},
        {morquilAPI3dModeConvert, "3DModeConvert"},
        {morquilAPI3dMode2dTo3d,  "3DMode2Dto3D"},
        {3,                       "3DModeAlign"}});
}

TEST(Types3D, HaveTheirValues) {
    ExpectWords<Types3D>({
        {morquilAPI3dTypeFullFrame,  "3DFullFrame"},
        {morquilAPI3dTypeSideBySide, "3DSideBySide"},
        {morquilAPI3dTypeTopBottom,  "3DTopBottom"},
        {morquilAPI3dTypeLineByLine, "3DLineByLine"}});
}

TEST(Flips3D, HaveTheirValues) {
    ExpectWords<Flips3D>({
        {0, "Off"},
        {1, "Horizontal"},
        {2, "Vertical"},
        {3, "Both"}});
}

// clang-format on

TEST(VideoSources, SpellFiberAsOptical) {
    EXPECT_EQ(VideoSources::words.Find("Optical"), std::size_t{morquilAPIVideoSourceFiberOpt});
    EXPECT_EQ(VideoSources::words.Find("FiberOpt"), VideoSources::words.Size());
}

TEST(AfdInsertTypes, KnowNoSingleDigit) {
    EXPECT_EQ(FrcApertures::words.Find("0"), std::size_t{morquilAPIFrcAperture0});
    EXPECT_EQ(AfdInsertTypes::words.Find("0"), AfdInsertTypes::words.Size());
}

}  // namespace
}  // namespace Morquil
