#include "features/mode_3d.h"

#include <gtest/gtest.h>

#include "tests/unit/features/feature_rig.h"

namespace Morquil::Testing {
namespace {

using Mode3D = CMorquil3dMode;
class Mode3DFeature : public FeatureTest<Mode3D> {};

TEST_F(Mode3DFeature, SendsOneLineForEachSetter) {
    ExpectSent(feature.SetMode(morquilAPI3dMode2dTo3d), "3D mode: 3DMode2Dto3D\n");
    ExpectSent(feature.SetIntensity(-1), "2D3D intensity: -1\n");
    ExpectSent(feature.SetDepth(2), "2D3D depth: 2\n");
    ExpectSent(feature.SetInput3dType(morquilAPI3dTypeSideBySide), "3D input: 3DSideBySide\n");
    ExpectSent(feature.SetOutput3dType(morquilAPI3dTypeLineByLine), "3D output: 3DLineByLine\n");
}

TEST_F(Mode3DFeature, SendsTheModeThatHasNoName) {
    ExpectSent(feature.SetMode(static_cast<_MorquilAPI3dMode>(3)), "3D mode: 3DModeAlign\n");
}

TEST_F(Mode3DFeature, RefusesWordsBeyondTheTables) {
    ExpectBounded(&Mode3D::SetMode, 4);
    ExpectBounded(&Mode3D::SetInput3dType, 4);
    ExpectBounded(&Mode3D::SetOutput3dType, 4);
}

TEST_F(Mode3DFeature, AnswersFromTheReport) {
    ExpectGets(&Mode3D::GetMode, static_cast<_MorquilAPI3dMode>(3), "3D mode: 3DModeAlign\n");
    ExpectGets(&Mode3D::GetIntensity, -1, "2D3D intensity: -1\n");
    ExpectGets(&Mode3D::GetDepth, 2, "2D3D depth: 2\n");
    ExpectGets(&Mode3D::GetInput3dType, morquilAPI3dTypeTopBottom, "3D input: 3DTopBottom\n");
    ExpectGets(&Mode3D::GetOutput3dType, morquilAPI3dTypeFullFrame, "3D output: 3DFullFrame\n");
    ExpectGetsRange(&Mode3D::GetIntensityRange, -1, 11, "2D3D intensity range: -1 11\n");
    ExpectGetsRange(&Mode3D::GetDepthRange, -2, 12, "2D3D depth range: -2 12\n");
}

}  // namespace
}  // namespace Morquil::Testing
