// What accompanies the picture: timecode, captions, format description.
#include "properties/property_rows.h"
#include "properties/property_table.h"

namespace Morquil::Properties {
namespace {

struct DropFrameModes {
    static constexpr std::string_view call = MethodFacts<&morquil::features::Timecode::IsDropFrameModeAvailable>::name;
    static constexpr std::array follows{OutputMode::property};
    static Offer Of(const morquil::Device& device) {
        const std::optional<morquil::VideoMode> output = OutputMode::Of(device);
        if (!output) {
            return {};
        }
        return WordsWith<morquil::TimecodeDropFrameMode>(
            [timecode = device.Timecode(), output](morquil::TimecodeDropFrameMode mode) {
                return timecode.IsDropFrameModeAvailable(*output, mode);
            });
    }
};

void AddTimecode(std::vector<Property>& all) {
    using F = morquil::features::Timecode;
    FeatureRows<F> rows(all, "timecode");
    // clang-format off
    rows.Setting<&F::GetMode, &F::SetMode, &F::IsModeAvailable>("mode", "Source of the output timecode");
    rows.Setting<&F::GetInputLine, &F::SetInputLine, RangeOfHeight<&F::GetLineRange, InputMode>{}>("input-line", "Line of the timecode at the input").In(Unit::LineNumber);
    rows.Setting<&F::GetOutputLine, &F::SetOutputLine, RangeOfHeight<&F::GetLineRange, OutputMode>{}>("output-line", "Line of the timecode at the output").In(Unit::LineNumber);
    rows.Setting<&F::GetDropFrameMode, &F::SetDropFrameMode, DropFrameModes{}>("drop-frame-mode", "Whether timecode numbers are dropped to keep clock time; frames never are");
    rows.Setting<&F::GetLossMode, &F::SetLossMode>("loss-mode", "What the timecode does when the input loses it");
    rows.Setting<&F::GetSource, &F::SetSource>("source", "Type of input timecode that is read");
    rows.Setting<&F::GetGenerateValue, &F::SetGenerateValue>("generate-value", "Start value of the generator").As(Kind::Timecode);
    rows.Setting<&F::GetJamSyncValue, &F::SetJamSyncValue>("jam-sync-value", "Start value of jam sync").As(Kind::Timecode);
    rows.Setting<&F::GetStartSource, &F::SetStartSource>("start-source", "Which start value the generator uses");
    rows.Command<&F::StartTimecode>("start", "Starts the timecode generator");
    // clang-format on
}

void AddClosedCaption(std::vector<Property>& all) {
    using F = morquil::features::ClosedCaption;
    FeatureRows<F> rows(all, "closed-caption");
    // clang-format off
    rows.Setting<&F::GetEnabled, &F::SetEnabled>("enabled", "Whether closed captions pass to the output");
    rows.Setting<&F::GetInputLine, &F::SetInputLine, &F::GetInputLineRange>("input-line", "Line of the captions at the input").In(Unit::LineNumber);
    rows.Setting<&F::GetOutputLine, &F::SetOutputLine, &F::GetOutputLineRange>("output-line", "Line of the captions at the output").In(Unit::LineNumber);
    rows.Setting<&F::GetService2Source, &F::SetService2Source>("service2-source", "Caption channel (CEA-608) that becomes the second caption service (CEA-708)");
    rows.Setting<&F::GetService1Language, &F::SetService1Language>("service1-language", "Language of the first caption service (CEA-708)");
    rows.Setting<&F::GetService2Language, &F::SetService2Language>("service2-language", "Language of the second caption service (CEA-708)");
    rows.Command<&F::ResetValues>("reset-values", "Resets the values selected by bits").As(Kind::Bits);
    // clang-format on
}

void AddVideoIndex(std::vector<Property>& all) {
    using F = morquil::features::VideoIndex;
    FeatureRows<F> rows(all, "video-index");
    // clang-format off
    rows.Setting<&F::GetIndexReaction, &F::SetIndexReaction>("reaction", "Whether aspect ratio conversion follows the active format description (AFD) of the input");
    rows.Setting<&F::GetAFDInsertType, &F::SetAFDInsertType, &F::IsAFDInsertTypeAvailable>("afd-insert-type", "Active format description (AFD) that is inserted into the output");
    rows.Setting<&F::GetAFDOutputLine, &F::SetAFDOutputLine, RangeOfHeight<&F::GetAFDOutputLineRange, OutputMode>{}>("afd-output-line", "Line of the output that carries the active format description (AFD)").In(Unit::LineNumber);
    // clang-format on
}

}  // namespace

void AddAncillaryRows(std::vector<Property>& all) {
    AddTimecode(all);
    AddClosedCaption(all);
    AddVideoIndex(all);
}

}  // namespace Morquil::Properties
