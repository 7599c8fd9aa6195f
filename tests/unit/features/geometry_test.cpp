// The two objects with the same geometry: the variable aspect ratio and the alignment.
#include <gtest/gtest.h>

#include <limits>

#include "features/align.h"
#include "features/variable_aspect_ratio.h"
#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using Ratio = CMorquilVariableAspectRatio;
class VariableAspectRatioFeature : public FeatureTest<Ratio> {};
using Align = CMorquilAlign;
class AlignFeature : public FeatureTest<Align> {};

TEST_F(VariableAspectRatioFeature, SendsOneLineForEachSetter) {
    ExpectSent(feature.SetSizeX(1.5), "Variable Aspect Ratio size X left: 1.500000\n");
    ExpectSent(feature.SetSizeY(-0.25), "Variable Aspect Ratio size Y left: -0.250000\n");
    ExpectSent(feature.SetPositionX(1e-7), "Variable Aspect Ratio pos X left: 0.000000\n");
    ExpectSent(feature.SetPositionY(123456), "Variable Aspect Ratio pos Y left: 123456.000000\n");
    ExpectSent(feature.SetTrimX(7), "Variable Aspect Ratio trim X left: 7\n");
    ExpectSent(feature.SetTrimY(4294967295U), "Variable Aspect Ratio trim Y left: -1\n");
    ExpectSent(feature.SetZoomCrop(3), "Variable Aspect Ratio zoom/crop: true\n");
    ExpectSent(feature.ResetValues(1), "ResetValues: 1\n");
}

TEST_F(VariableAspectRatioFeature, SendsAValueThatTheCopyHoldsAlready) {
    Report("Variable Aspect Ratio size X left: 1.5\n");
    ExpectSent(feature.SetSizeX(1.5), "Variable Aspect Ratio size X left: 1.500000\n");
}

TEST_F(VariableAspectRatioFeature, AnswersFromTheReport) {
    ExpectGets(&Ratio::GetSizeX, 1.5, "Variable Aspect Ratio size X left: 1.5\n");
    ExpectGets(&Ratio::GetSizeY, -2.5, "Variable Aspect Ratio size Y left: -2.5\n");
    ExpectGets(&Ratio::GetPositionX, 3.5, "Variable Aspect Ratio pos X left: 3.5\n");
    ExpectGets(&Ratio::GetPositionY, 0, "Variable Aspect Ratio pos Y left: 0\n");
    ExpectGets(&Ratio::GetTrimX, 5, "Variable Aspect Ratio trim X left: 5\n");
    ExpectGets(&Ratio::GetTrimY, 4294967295U, "Variable Aspect Ratio trim Y left: -1\n");
    ExpectGets(&Ratio::GetZoomCrop, 1, "Variable Aspect Ratio zoom/crop: true\n");
    ExpectGets(&Ratio::GetLastInputWidth, 1920, "Variable Aspect Ratio last input width: 1920\n");
    ExpectGets(&Ratio::GetLastInputHeight, 1080, "Variable Aspect Ratio last input height: 1080\n");
    ExpectGets(&Ratio::GetLastOutputWidth, 1280, "Variable Aspect Ratio last output width: 1280\n");
    ExpectGets(&Ratio::GetLastOutputHeight, 720, "Variable Aspect Ratio last output height: 720\n");
}

TEST_F(VariableAspectRatioFeature, AnswersTheReportedRanges) {
    ExpectGetsRange(&Ratio::GetSizeXRange, 0.5, 1.5, "Variable Aspect Ratio size X range: 0.5 1.5\n");
    ExpectGetsRange(&Ratio::GetSizeYRange, -0.5, 2.5, "Variable Aspect Ratio size Y range: -0.5 2.5\n");
    ExpectGetsRange(&Ratio::GetPositionXRange, -3.5, 3.5, "Variable Aspect Ratio pos X range: -3.5 3.5\n");
    ExpectGetsRange(&Ratio::GetPositionYRange, -4.5, 4.5, "Variable Aspect Ratio pos Y range: -4.5 4.5\n");
    ExpectGetsRange(&Ratio::GetTrimXRange, 5, 15, "Variable Aspect Ratio trim X range: 5 15\n");
    ExpectGetsRange(&Ratio::GetTrimYRange, 6, 16, "Variable Aspect Ratio trim Y range: 6 16\n");
}

TEST_F(VariableAspectRatioFeature, KnowsNothingOfTheRightSide) {
    Report("Variable Aspect Ratio size X right: 1.5\nVariable Aspect Ratio trim Y right: 2\n");
    double size = 0;
    unsigned trim = 0;
    EXPECT_EQ(feature.GetSizeX(&size), E_FAIL);
    EXPECT_EQ(feature.GetTrimY(&trim), E_FAIL);
}

TEST_F(VariableAspectRatioFeature, RefusesANumberWhoseLineWouldBeCut) {
    ExpectRefused(feature.SetSizeX(1e300));
    ExpectRefused(feature.SetSizeY(std::numeric_limits<double>::max()));
    ExpectRefused(feature.SetPositionX(-1e300));
    ExpectRefused(feature.SetPositionY(std::numeric_limits<double>::lowest()));
    EXPECT_EQ(feature.SetSizeX(1e200), S_OK);
}

TEST_F(AlignFeature, QueuesItsMessagesWithoutSendingThem) {
    ExpectRefused(feature.SetSizeX(1.5), S_OK);
    ExpectRefused(feature.SetSizeY(1.5), S_OK);
    ExpectRefused(feature.SetPositionX(1.5), S_OK);
    ExpectRefused(feature.SetPositionY(1.5), S_OK);
    ExpectRefused(feature.SetTrimX(1), S_OK);
    ExpectRefused(feature.SetTrimY(1), S_OK);
    ExpectRefused(feature.ResetValues(1), S_OK);
}

TEST_F(AlignFeature, AnswersFromTheReport) {
    ExpectGets(&Align::GetSizeX, 1.5, "Align size X left: 1.5\n");
    ExpectGets(&Align::GetSizeY, -2.5, "Align size Y left: -2.5\n");
    ExpectGets(&Align::GetPositionX, 3.5, "Align pos X left: 3.5\n");
    ExpectGets(&Align::GetPositionY, 4.5, "Align pos Y left: 4.5\n");
    ExpectGets(&Align::GetTrimX, 5, "Align trim X left: 5\n");
    ExpectGets(&Align::GetTrimY, 6, "Align trim Y left: 6\n");
    ExpectGets(&Align::GetLastInputWidth, 1920, "Align last input width: 1920\n");
    ExpectGets(&Align::GetLastInputHeight, 1080, "Align last input height: 1080\n");
    ExpectGets(&Align::GetLastOutputWidth, 1280, "Align last output width: 1280\n");
    ExpectGets(&Align::GetLastOutputHeight, 720, "Align last output height: 720\n");
}

TEST_F(AlignFeature, AnswersTheReportedRanges) {
    ExpectGetsRange(&Align::GetSizeXRange, 0.5, 1.5, "Align size X range: 0.5 1.5\n");
    ExpectGetsRange(&Align::GetSizeYRange, -0.5, 2.5, "Align size Y range: -0.5 2.5\n");
    ExpectGetsRange(&Align::GetPositionXRange, -3.5, 3.5, "Align pos X range: -3.5 3.5\n");
    ExpectGetsRange(&Align::GetPositionYRange, -4.5, 4.5, "Align pos Y range: -4.5 4.5\n");
    ExpectGetsRange(&Align::GetTrimXRange, 5, 15, "Align trim X range: 5 15\n");
    ExpectGetsRange(&Align::GetTrimYRange, 6, 16, "Align trim Y range: 6 16\n");
}

TEST_F(AlignFeature, KnowsNothingOfTheRightSide) {
    Report("Align size X right: 1.5\n");
    double size = 0;
    EXPECT_EQ(feature.GetSizeX(&size), E_FAIL);
}

}  // namespace
}  // namespace Morquil::Testing
