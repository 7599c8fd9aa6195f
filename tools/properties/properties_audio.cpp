// Sound.
#include "properties/property_rows.h"
#include "properties/property_table.h"

namespace Morquil::Properties {

void AddAudioRows(std::vector<Property>& all) {
    using F = morquil::features::AudioMapping;
    FeatureRows<F> rows(all, "audio", Modes::DoNotMatter);
    // clang-format off
    rows.Setting<&F::GetAudioGain, &F::SetAudioGain, &F::GetAudioGainRange>("gain", "Gain of all input channels");
    rows.Setting<&F::GetAudioDelay, &F::SetAudioDelay, &F::GetAudioDelayRange>("delay", "Delay of all channels");
    rows.Setting<&F::GetAESAnalogOutputSelect, &F::SetAESAnalogOutputSelect>("aes-analog-output-select", "Whether the shared output carries AES or analog audio");
    rows.Setting<&F::GetAudioMeterChan, &F::SetAudioMeterChan>("meter-channels", "Channels shown on the meter");
    rows.Setting<&F::GetAnalogInRefLevel, &F::SetAnalogInRefLevel, &F::GetAnaInRefLevelRange>("analog-input-ref-level", "Reference level of the analog audio input");
    rows.Settings<&F::GetAudioMap, &F::SetAudioMap, &F::IsAudioSelectionAvailable>(morquilAudioMaxOutputChannels, "map", "Source of an output channel");
    rows.Settings<&F::GetAudioInMap, &F::SetAudioInMap>(morquilAudioMaxPairs, "input-map", "Source of an input pair");
    rows.Command<&F::ResetValues>("reset-values", "Resets the values selected by bits").As(Kind::Bits);
    // clang-format on
}

}  // namespace Morquil::Properties
