// Where the picture is placed in the frame, and what fills the rest.
#include "properties/property_rows.h"
#include "properties/property_table.h"

namespace Morquil::Properties {
namespace {

void AddAspectFill(std::vector<Property>& all) {
    using F = morquil::features::AspectFill;
    FeatureRows<F> rows(all, "aspect-fill");
    // clang-format off
    rows.Setting<&F::GetLuma, &F::SetLuma, &F::GetLumaRange>("luma", "Luma beside the picture");
    rows.Setting<&F::GetCb, &F::SetCb, &F::GetCbRange>("cb", "Blue difference beside the picture");
    rows.Setting<&F::GetCr, &F::SetCr, &F::GetCrRange>("cr", "Red difference beside the picture");
    rows.Command<&F::ResetValues>("reset-values", "Resets the levels whose bits are set").As(Kind::Bits);
    // clang-format on
}

void AddAspect(std::vector<Property>& all) {
    using F = morquil::features::VariableAspectRatio;
    FeatureRows<F> rows(all, "aspect");
    // clang-format off
    rows.Setting<&F::GetSizeX, &F::SetSizeX, &F::GetSizeXRange>("size-x", "Width of the picture");
    rows.Setting<&F::GetSizeY, &F::SetSizeY, &F::GetSizeYRange>("size-y", "Height of the picture");
    rows.Setting<&F::GetPositionX, &F::SetPositionX, &F::GetPositionXRange>("position-x", "Place of the picture sideways");
    rows.Setting<&F::GetPositionY, &F::SetPositionY, &F::GetPositionYRange>("position-y", "Place of the picture up or down");
    rows.Setting<&F::GetTrimX, &F::SetTrimX, &F::GetTrimXRange>("trim-x", "What is cut off at the sides");
    rows.Setting<&F::GetTrimY, &F::SetTrimY, &F::GetTrimYRange>("trim-y", "What is cut off above and below");
    rows.Setting<&F::GetZoomCrop, &F::SetZoomCrop>("zoom-crop", "Whether the picture is zoomed and cropped");
    rows.Reading<&F::GetLastInputWidth>("last-input-width", "Width that the values were made for, at the input").In(Unit::Pixels);
    rows.Reading<&F::GetLastInputHeight>("last-input-height", "Height that the values were made for, at the input").In(Unit::Pixels);
    rows.Reading<&F::GetLastOutputWidth>("last-output-width", "Width that the values were made for, at the output").In(Unit::Pixels);
    rows.Reading<&F::GetLastOutputHeight>("last-output-height", "Height that the values were made for, at the output").In(Unit::Pixels);
    rows.Command<&F::ResetValues>("reset-values", "Resets the values whose bits are set").As(Kind::Bits);
    // clang-format on
}

}  // namespace

void AddGeometryRows(std::vector<Property>& all) {
    AddAspectFill(all);
    AddAspect(all);
}

}  // namespace Morquil::Properties
