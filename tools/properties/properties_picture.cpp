// Picture processing.
#include "properties/property_rows.h"
#include "properties/property_table.h"

namespace Morquil::Properties {
namespace {

void AddProcAmp(std::vector<Property>& all) {
    using F = morquil::features::VideoProcAmp;
    FeatureRows<F> rows(all, "proc-amp", Modes::DoNotMatter);
    // clang-format off
    rows.Setting<&F::GetGain, &F::SetGain, &F::GetGainRange>("gain", "Gain");
    rows.Setting<&F::GetBlackLevel, &F::SetBlackLevel, &F::GetBlackLevelRange>("black-level", "Black level");
    rows.Setting<&F::GetSaturation, &F::SetSaturation, &F::GetSaturationRange>("saturation", "Saturation");
    rows.Setting<&F::GetHue, &F::SetHue, &F::GetHueRange>("hue", "Hue");
    rows.Setting<&F::GetRy, &F::SetRy, &F::GetRyRange>("ry", "R-Y level");
    rows.Setting<&F::GetBy, &F::SetBy, &F::GetByRange>("by", "B-Y level");
    rows.Setting<&F::GetSharpness, &F::SetSharpness, &F::GetSharpnessRange>("sharpness", "Sharpness");
    rows.Command<&F::ResetAll>("reset-all", "Resets all levels");
    rows.Command<&F::ResetValues>("reset-values", "Resets the levels selected by bits").As(Kind::Bits);
    // clang-format on
}

void AddColor(std::vector<Property>& all) {
    using F = morquil::features::ColorCorrection;
    FeatureRows<F> rows(all, "color", Modes::DoNotMatter);
    // clang-format off
    rows.Setting<&F::GetRed, &F::SetRed, &F::GetRedRange>("red", "Red level");
    rows.Setting<&F::GetGreen, &F::SetGreen, &F::GetGreenRange>("green", "Green level");
    rows.Setting<&F::GetBlue, &F::SetBlue, &F::GetBlueRange>("blue", "Blue level");
    rows.Command<&F::ResetValues>("reset-values", "Resets the levels selected by bits").As(Kind::Bits);
    // clang-format on
}

void AddClip(std::vector<Property>& all) {
    using F = morquil::features::VideoClip;
    FeatureRows<F> rows(all, "clip", Modes::DoNotMatter);
    // clang-format off
    rows.Setting<&F::GetLumaLow, &F::SetLumaLow, &F::GetLumaLowRange>("luma-low", "Lower luma clip level");
    rows.Setting<&F::GetLumaHigh, &F::SetLumaHigh, &F::GetLumaHighRange>("luma-high", "Upper luma clip level");
    rows.Setting<&F::GetChromaLow, &F::SetChromaLow, &F::GetChromaLowRange>("chroma-low", "Lower chroma clip level");
    rows.Setting<&F::GetChromaHigh, &F::SetChromaHigh, &F::GetChromaHighRange>("chroma-high", "Upper chroma clip level");
    rows.Command<&F::ResetValues>("reset-values", "Resets the limits selected by bits").As(Kind::Bits);
    // clang-format on
}

void AddNoiseReduction(std::vector<Property>& all) {
    using F = morquil::features::NoiseReduction;
    FeatureRows<F> rows(all, "noise-reduction", Modes::DoNotMatter);
    // clang-format off
    rows.Setting<&F::GetEnabled, &F::SetEnabled>("enabled", "Whether noise reduction is on");
    rows.Setting<&F::GetBias, &F::SetBias, &F::GetBiasRange>("bias", "Strength of noise reduction");
    rows.Setting<&F::GetSplitScreen, &F::SetSplitScreen>("split-screen", "Whether one half of the picture is left unprocessed for comparison");
    rows.Setting<&F::GetRedOverlay, &F::SetRedOverlay>("red-overlay", "Whether detected noise is shown in red");
    rows.Reading<&F::IsNoiseReductionAvailable>("available", "Whether noise reduction is available now");
    // clang-format on
}

void AddTestPattern(std::vector<Property>& all) {
    using F = morquil::features::TestPattern;
    FeatureRows<F> rows(all, "test-pattern");
    // clang-format off
    rows.Setting<&F::GetOutput, &F::SetOutput, &F::IsTestPatternAvailable>("output", "Test pattern that is output");
    rows.Setting<&F::GetNoSignal, &F::SetNoSignal, &F::IsTestPatternAvailable>("no-signal", "What is output while the input has no signal");
    rows.Setting<&F::GetTone, &F::SetTone, &F::IsTestToneAvailable>("tone", "Test tone");
    rows.Setting<&F::GetMotion, &F::SetMotion>("motion", "Whether the test pattern moves");
    rows.Setting<&F::GetHorizMotion, &F::SetHorizMotion, &F::GetMotionRange>("horizontal-motion", "Horizontal speed of the test pattern");
    rows.Setting<&F::GetVertMotion, &F::SetVertMotion, &F::GetMotionRange>("vertical-motion", "Vertical speed of the test pattern");
    rows.Reading<&F::IsMotionAvailable>("motion-available", "Whether the test pattern can move now");
    // clang-format on
}

void AddAdvanced(std::vector<Property>& all) {
    using F = morquil::features::VideoAdvanced;
    FeatureRows<F> rows(all, "advanced");
    // clang-format off
    rows.Setting<&F::GetCleanCadence, &F::SetCleanCadence>("clean-cadence", "Whether broken film cadence is corrected");
    rows.Setting<&F::GetScenecutDetect, &F::SetScenecutDetect>("scenecut-detect", "Whether scene cuts are detected");
    rows.Setting<&F::GetAntiAlias, &F::SetAntiAlias>("anti-alias", "Whether edges are anti-aliased");
    rows.Setting<&F::GetRP177, &F::SetRP177>("rp177", "Whether colour conversion follows SMPTE RP 177");
    rows.Setting<&F::GetSourceType, &F::SetSourceType, &F::IsSourceTypeAvailable>("source-type", "Source material: video or film");
    rows.Setting<&F::GetFrcAperture, &F::SetFrcAperture, &F::GetFrcApertureRange>("frc-aperture", "Aperture of frame rate conversion");
    rows.Setting<&F::GetProcMode, &F::SetProcMode, &F::IsProcModeAvailable>("proc-mode", "Processing for quality or for low latency");
    rows.Reading<&F::IsFrcApertureAvailable>("frc-aperture-available", "Whether the frame rate conversion aperture has an effect now");
    // clang-format on
}

void AddMode3d(std::vector<Property>& all) {
    using F = morquil::features::Mode3d;
    FeatureRows<F> rows(all, "3d");
    // clang-format off
    rows.Setting<&F::GetMode, &F::SetMode>("mode", "3D mode");
    rows.Setting<&F::GetIntensity, &F::SetIntensity, &F::GetIntensityRange>("intensity", "Intensity of 2D to 3D conversion");
    rows.Setting<&F::GetDepth, &F::SetDepth, &F::GetDepthRange>("depth", "Depth of 2D to 3D conversion");
    rows.Setting<&F::GetInput3dType, &F::SetInput3dType>("input-type", "3D format of the input");
    rows.Setting<&F::GetOutput3dType, &F::SetOutput3dType>("output-type", "3D format of the output");
    // clang-format on
}

}  // namespace

void AddPictureRows(std::vector<Property>& all) {
    AddProcAmp(all);
    AddColor(all);
    AddClip(all);
    AddNoiseReduction(all);
    AddTestPattern(all);
    AddAdvanced(all);
    AddMode3d(all);
}

}  // namespace Morquil::Properties
