#include "features/audio_mapping.h"

#include <gtest/gtest.h>

#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using Audio = CMorquilAudioMapping;
class AudioMappingFeature : public FeatureTest<Audio> {};

TEST_F(AudioMappingFeature, SendsOneLineForEachSetterOfOneValue) {
    ExpectSent(feature.SetAESAnalogOutputSelect(2), "AES output select: true\n");
    ExpectSent(feature.SetAudioMap(15, morquilAudSelMute), "AudioOut15: TTMute\n");
    ExpectSent(feature.SetAudioInMap(7, morquilAudInSrcRCAPair), "AudioInPair7: RCAPair\n");
    ExpectSent(feature.SetAudioMeterChan(morquilAudMeterChannels_3_4), "Audio meter channels: MeterChan3&4\n");
    ExpectSent(feature.SetAnalogInRefLevel(-18), "Analog input ref level: -18\n");
    ExpectSent(feature.ResetValues(6), "ResetValues: 6\n");
}

TEST_F(AudioMappingFeature, SendsTheGainToAllSixteenInputs) {
    ExpectSent(feature.SetAudioGain(-6),
               "AudioInLevel0: -6\nAudioInLevel1: -6\nAudioInLevel2: -6\nAudioInLevel3: -6\n"
               "AudioInLevel4: -6\nAudioInLevel5: -6\nAudioInLevel6: -6\nAudioInLevel7: -6\n"
               "AudioInLevel8: -6\nAudioInLevel9: -6\nAudioInLevel10: -6\nAudioInLevel11: -6\n"
               "AudioInLevel12: -6\nAudioInLevel13: -6\nAudioInLevel14: -6\nAudioInLevel15: -6\n");
}

TEST_F(AudioMappingFeature, SendsTheDelayToAllEightPairs) {
    ExpectSent(feature.SetAudioDelay(40),
               "AudioUserDelay0: 40\nAudioUserDelay1: 40\nAudioUserDelay2: 40\nAudioUserDelay3: 40\n"
               "AudioUserDelay4: 40\nAudioUserDelay5: 40\nAudioUserDelay6: 40\nAudioUserDelay7: 40\n");
}

TEST_F(AudioMappingFeature, AnswersFromTheReport) {
    ExpectGets(&Audio::GetAudioGain, 3, "AudioInLevel0: 3\nAudioInLevel1: 5\n");
    ExpectGets(&Audio::GetAudioDelay, 4, "AudioUserDelay0: 4\nAudioUserDelay7: 5\n");
    ExpectGets(&Audio::GetAESAnalogOutputSelect, 1, "AES output select: true\n");
    ExpectGets(&Audio::GetAudioMeterChan, morquilAudMeterChannels_15_16, "Audio meter channels: MeterChan15&16\n");
    ExpectGets(&Audio::GetAnalogInRefLevel, -18, "Analog input ref level: -18\n");
    ExpectGetsRange(&Audio::GetAudioGainRange, -1, 11, "Audio level range: -1 11\n");
    ExpectGetsRange(&Audio::GetAudioDelayRange, -2, 12, "Analog delay range: -2 12\n");
    ExpectGetsRange(&Audio::GetAnaInRefLevelRange, -3, 13, "Analog input ref level range: -3 13\n");
    ExpectOffers(&Audio::IsAudioSelectionAvailable, 31, {0, 16, 30}, "Audio selections: AudioIn1 DolbyD1 TTMute\n");
}

TEST_F(AudioMappingFeature, AnswersNoGainAndNoDelayFromOtherChannels) {
    Report("AudioInLevel1: 5\nAudioUserDelay1: 6\n");
    int value = 0;
    EXPECT_EQ(feature.GetAudioGain(&value), E_FAIL);
    EXPECT_EQ(feature.GetAudioDelay(&value), E_FAIL);
}

TEST_F(AudioMappingFeature, AnswersTheMapOfEveryChannel) {
    for (unsigned channel = 0; channel < 16; ++channel) {
        auto input = morquilAudSelIn1;
        EXPECT_EQ(feature.GetAudioMap(channel, &input), E_FAIL) << channel;
        Report("AudioOut" + std::to_string(channel) + ": AudioIn" + std::to_string(channel + 1) + "\n");
        EXPECT_EQ(feature.GetAudioMap(channel, &input), S_OK) << channel;
        EXPECT_EQ(static_cast<unsigned>(input), channel);
    }
}

TEST_F(AudioMappingFeature, AnswersTheSourceOfEveryPair) {
    for (unsigned pair = 0; pair < 8; ++pair) {
        auto source = morquilAudInSrcMutePair;
        EXPECT_EQ(feature.GetAudioInMap(pair, &source), E_FAIL) << pair;
        Report("AudioInPair" + std::to_string(pair) + ": EmbedPair" + std::to_string(pair + 1) + "\n");
        EXPECT_EQ(feature.GetAudioInMap(pair, &source), S_OK) << pair;
        EXPECT_EQ(static_cast<unsigned>(source), pair);
    }
}

TEST_F(AudioMappingFeature, RefusesChannelsAndPairsThatDoNotExist) {
    auto input = morquilAudSelIn1;
    for (const unsigned channel : {16U, 20U, 4294967295U}) {
        ExpectRefused(feature.SetAudioMap(channel, input));
        EXPECT_EQ(feature.GetAudioMap(channel, &input), E_INVALIDARG) << channel;
        EXPECT_EQ(feature.GetAudioMap(channel, nullptr), E_POINTER) << channel;
    }
    auto source = morquilAudInSrcMutePair;
    for (const unsigned pair : {8U, 4294967295U}) {
        ExpectRefused(feature.SetAudioInMap(pair, source));
        EXPECT_EQ(feature.GetAudioInMap(pair, &source), E_INVALIDARG) << pair;
        EXPECT_EQ(feature.GetAudioInMap(pair, nullptr), E_POINTER) << pair;
    }
}

TEST_F(AudioMappingFeature, SendsABlockWithoutALineForAnInvalidInput) {
    for (const int none : {31, 40, -1}) {
        ExpectSent(feature.SetAudioMap(15, static_cast<_MorquilAPIAudioSelect>(none)), "");
        ExpectSent(feature.SetAudioInMap(0, static_cast<_MorquilAPIAudioInSourceSelect>(none)), "");
    }
    ExpectUnbounded(&Audio::SetAudioMeterChan, 8);
}

}  // namespace
}  // namespace Morquil::Testing
