#include "features/video_advanced.h"

#include <gtest/gtest.h>

#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using Advanced = CMorquilVideoAdvanced;
class VideoAdvancedFeature : public FeatureTest<Advanced> {};

TEST_F(VideoAdvancedFeature, SendsOneLineForEachSetter) {
    ExpectSent(feature.SetCleanCadence(1), "Clean cadence: true\n");
    ExpectSent(feature.SetScenecutDetect(0), "Scenecut detect: false\n");
    ExpectSent(feature.SetAntiAlias(9), "AntiAlias: true\n");
    ExpectSent(feature.SetRP177(-9), "RP177: true\n");
    ExpectSent(feature.SetSourceType(morquilAPISourceTypeFilm), "Source type: Film\n");
    ExpectSent(feature.SetFrcAperture(morquilAPIFrcAperture3), "FRC aperture: 3\n");
    ExpectSent(feature.SetProcMode(morquilAPIProcModeSimple), "Processing: Lowest Latency\n");
}

TEST_F(VideoAdvancedFeature, RefusesWordsBeyondTheTables) {
    ExpectBounded(&Advanced::SetSourceType, 3);
    ExpectBounded(&Advanced::SetFrcAperture, 4);
    ExpectBounded(&Advanced::SetProcMode, 2);
}

TEST_F(VideoAdvancedFeature, AnswersFromTheReport) {
    ExpectGets(&Advanced::GetCleanCadence, 1, "Clean cadence: true\n");
    ExpectGets(&Advanced::GetScenecutDetect, 0, "Scenecut detect: false\n");
    ExpectGets(&Advanced::GetAntiAlias, 1, "AntiAlias: true\n");
    ExpectGets(&Advanced::GetRP177, 1, "RP177: true\n");
    ExpectGets(&Advanced::GetSourceType, morquilAPISourceTypeVideo, "Source type: Video\n");
    ExpectGets(&Advanced::GetFrcAperture, morquilAPIFrcAperture2, "FRC aperture: 2\n");
    ExpectGets(&Advanced::GetProcMode, morquilAPIProcModeNormal, "Processing: Highest Quality\n");
    ExpectGetsRange(&Advanced::GetFrcApertureRange, morquilAPIFrcAperture1, morquilAPIFrcAperture3,
                    "FRC aperture range: 1 3\n");
}

TEST_F(VideoAdvancedFeature, AnswersWhatIsAvailable) {
    ExpectOffers(&Advanced::IsSourceTypeAvailable, 3, {0, 2}, "Available source types: Auto Film\n");
    ExpectFlag(&Advanced::IsFrcApertureAvailable, "FRC aperture available");
}

// The two words hold spaces and lists are split at spaces: no mode ever counts as available.
TEST_F(VideoAdvancedFeature, NeverCountsAProcessingModeAsAvailable) {
    ExpectOffers(&Advanced::IsProcModeAvailable, 2, {}, "Available processing modes: Highest Quality Lowest Latency\n");
}

TEST_F(VideoAdvancedFeature, NotifiesOfEveryKindOfAvailability) {
    ExpectNotifiedOfEachAvailability(
        "Available source types: Film\nFRC aperture range: 1 2\nFRC aperture available: true\n");
}

}  // namespace
}  // namespace Morquil::Testing
