#include "features/color_correction.h"

#include <gtest/gtest.h>

#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using ColorCorrection = CMorquilColorCorrection;
class ColorCorrectionFeature : public FeatureTest<ColorCorrection> {};

TEST_F(ColorCorrectionFeature, SendsOneLineForEachSetter) {
    ExpectSent(feature.SetRed(-1), "Red: -1\n");
    ExpectSent(feature.SetGreen(2), "Green: 2\n");
    ExpectSent(feature.SetBlue(3), "Blue: 3\n");
    ExpectSent(feature.ResetValues(0xFFFFFFFF), "ResetValues: -1\n");
}

TEST_F(ColorCorrectionFeature, AnswersFromTheReport) {
    ExpectGets(&ColorCorrection::GetRed, -1, "Red: -1\n");
    ExpectGets(&ColorCorrection::GetGreen, 2, "Green: 2\n");
    ExpectGets(&ColorCorrection::GetBlue, 3, "Blue: 3\n");
    ExpectGetsRange(&ColorCorrection::GetRedRange, -1, 11, "Red range: -1 11\n");
    ExpectGetsRange(&ColorCorrection::GetGreenRange, -2, 12, "Green range: -2 12\n");
    ExpectGetsRange(&ColorCorrection::GetBlueRange, -3, 13, "Blue range: -3 13\n");
}

TEST_F(ColorCorrectionFeature, NotifiesOfItsOwnValuesOnly) {
    for (const char* const own : {"Red: 1\n", "Green: 1\n", "Blue: 1\n"}) {
        EXPECT_TRUE(IsNotifiedOf(own)) << own;
    }
    EXPECT_FALSE(
        IsNotifiedOf("Luma low: 1\nLuma high: 1\nChroma low: 1\nChroma high: 1\nAspect fill luma: 1\n"
                     "Aspect fill Cb: 1\nAspect fill Cr: 1\nResetValues: 1\n"));
    EXPECT_TRUE(IsNotifiedOf("Luma low: 2\nBlue: 2\n"));
}

TEST_F(ColorCorrectionFeature, KeepsTheWholeBlockForTheSettings) {
    Report("Luma low: 1\nAspect fill Cr: 2\n");
    EXPECT_EQ(feature.GetSettingsText(), "VIDEO ADJUST:\nLuma low: 1\nAspect fill Cr: 2\n\n");
}

}  // namespace
}  // namespace Morquil::Testing
