// Where the picture is placed in the frame, and what fills the rest.
#include "properties/property_rows.h"
#include "properties/property_table.h"

namespace Morquil::Properties {
namespace {

void AddAspectFill(std::vector<Property>& all) {
    using F = morquil::features::AspectFill;
    FeatureRows<F> rows(all, "aspect-fill", Modes::DoNotMatter);
    // clang-format off
    rows.Setting<&F::GetLuma, &F::SetLuma, &F::GetLumaRange>("luma", "Luma of the fill around the picture");
    rows.Setting<&F::GetCb, &F::SetCb, &F::GetCbRange>("cb", "Cb of the fill around the picture");
    rows.Setting<&F::GetCr, &F::SetCr, &F::GetCrRange>("cr", "Cr of the fill around the picture");
    rows.Command<&F::ResetValues>("reset-values", "Resets the levels selected by bits").As(Kind::Bits);
    // clang-format on
}

void AddAspect(std::vector<Property>& all) {
    using F = morquil::features::VariableAspectRatio;
    FeatureRows<F> rows(all, "aspect");
    // clang-format off
    rows.Setting<&F::GetSizeX, &F::SetSizeX, &F::GetSizeXRange>("size-x", "Width of the picture");
    rows.Setting<&F::GetSizeY, &F::SetSizeY, &F::GetSizeYRange>("size-y", "Height of the picture");
    rows.Setting<&F::GetPositionX, &F::SetPositionX, &F::GetPositionXRange>("position-x", "Horizontal position of the picture");
    rows.Setting<&F::GetPositionY, &F::SetPositionY, &F::GetPositionYRange>("position-y", "Vertical position of the picture");
    rows.Setting<&F::GetTrimX, &F::SetTrimX, &F::GetTrimXRange>("trim-x", "Horizontal trim");
    rows.Setting<&F::GetTrimY, &F::SetTrimY, &F::GetTrimYRange>("trim-y", "Vertical trim");
    rows.Setting<&F::GetZoomCrop, &F::SetZoomCrop>("zoom-crop", "Whether the picture is zoomed and cropped");
    rows.Reading<&F::GetLastInputWidth>("last-input-width", "Input width for which the geometry was set").In(Unit::Pixels);
    rows.Reading<&F::GetLastInputHeight>("last-input-height", "Input height for which the geometry was set").In(Unit::Pixels);
    rows.Reading<&F::GetLastOutputWidth>("last-output-width", "Output width for which the geometry was set").In(Unit::Pixels);
    rows.Reading<&F::GetLastOutputHeight>("last-output-height", "Output height for which the geometry was set").In(Unit::Pixels);
    rows.Command<&F::ResetValues>("reset-values", "Resets the values selected by bits").As(Kind::Bits);
    // clang-format on
}

}  // namespace

void AddGeometryRows(std::vector<Property>& all) {
    AddAspectFill(all);
    AddAspect(all);
}

}  // namespace Morquil::Properties
