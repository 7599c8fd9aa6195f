#include "features/aspect_fill.h"

#include <gtest/gtest.h>

#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using Fill = CMorquilAspectFill;
class AspectFillFeature : public FeatureTest<Fill> {};

TEST_F(AspectFillFeature, SendsOneLineForEachSetter) {
    ExpectSent(feature.SetLuma(64), "Aspect fill luma: 64\n");
    ExpectSent(feature.SetCb(512), "Aspect fill Cb: 512\n");
    ExpectSent(feature.SetCr(4294967295U), "Aspect fill Cr: -1\n");
    ExpectSent(feature.ResetValues(0), "ResetValues: 0\n");
}

TEST_F(AspectFillFeature, AnswersFromTheReport) {
    ExpectGets(&Fill::GetLuma, 64, "Aspect fill luma: 64\n");
    ExpectGets(&Fill::GetCb, 512, "Aspect fill Cb: 512\n");
    ExpectGets(&Fill::GetCr, 4294967295U, "Aspect fill Cr: -1\n");
    ExpectGetsRange(&Fill::GetLumaRange, 1, 11, "Aspect fill luma range: 1 11\n");
    ExpectGetsRange(&Fill::GetCbRange, 2, 12, "Aspect fill Cb range: 2 12\n");
    ExpectGetsRange(&Fill::GetCrRange, 3, 13, "Aspect fill Cr range: 3 13\n");
}

TEST_F(AspectFillFeature, NotifiesOfItsOwnValuesOnly) {
    for (const char* const own : {"Aspect fill luma: 1\n", "Aspect fill Cb: 1\n", "Aspect fill Cr: 1\n"}) {
        EXPECT_TRUE(IsNotifiedOf(own)) << own;
    }
    EXPECT_FALSE(
        IsNotifiedOf("Red: 1\nGreen: 1\nBlue: 1\nLuma low: 1\nLuma high: 1\nChroma low: 1\nChroma high: 1\n"
                     "ResetValues: 1\n"));
    EXPECT_TRUE(IsNotifiedOf("Red: 2\nAspect fill Cr: 2\n"));
}

}  // namespace
}  // namespace Morquil::Testing
