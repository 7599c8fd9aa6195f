#include "features/video_clip.h"

#include <gtest/gtest.h>

#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using Clip = CMorquilVideoClip;
class VideoClipFeature : public FeatureTest<Clip> {};

TEST_F(VideoClipFeature, SendsOneLineForEachSetter) {
    ExpectSent(feature.SetLumaLow(0xEE6B2800), "Luma low: -294967296\n");
    ExpectSent(feature.SetLumaHigh(235), "Luma high: 235\n");
    ExpectSent(feature.SetChromaLow(16), "Chroma low: 16\n");
    ExpectSent(feature.SetChromaHigh(240), "Chroma high: 240\n");
    ExpectSent(feature.ResetValues(7), "ResetValues: 7\n");
}

TEST_F(VideoClipFeature, AnswersFromTheReport) {
    ExpectGets(&Clip::GetLumaLow, 4294967295U, "Luma low: -1\n");
    ExpectGets(&Clip::GetLumaHigh, 235, "Luma high: 235\n");
    ExpectGets(&Clip::GetChromaLow, 16, "Chroma low: 16\n");
    ExpectGets(&Clip::GetChromaHigh, 0, "Chroma high: 0\n");
    ExpectGetsRange(&Clip::GetLumaLowRange, 1, 11, "Luma low range: 1 11\n");
    ExpectGetsRange(&Clip::GetLumaHighRange, 2, 4294967295U, "Luma high range: 2 4294967295\n");
    ExpectGetsRange(&Clip::GetChromaLowRange, 3, 13, "Chroma low range: 3 13\n");
    ExpectGetsRange(&Clip::GetChromaHighRange, 4, 14, "Chroma high range: 4 14\n");
}

TEST_F(VideoClipFeature, NotifiesOfItsOwnValuesOnly) {
    for (const char* const own : {"Luma low: 1\n", "Luma high: 1\n", "Chroma low: 1\n", "Chroma high: 1\n"}) {
        EXPECT_TRUE(IsNotifiedOf(own)) << own;
    }
    EXPECT_FALSE(
        IsNotifiedOf("Red: 1\nGreen: 1\nBlue: 1\nAspect fill luma: 1\nAspect fill Cb: 1\nAspect fill Cr: 1\n"
                     "ResetValues: 1\n"));
    EXPECT_TRUE(IsNotifiedOf("Red: 2\nChroma high: 2\n"));
}

}  // namespace
}  // namespace Morquil::Testing
