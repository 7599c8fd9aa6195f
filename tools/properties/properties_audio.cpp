// Sound.
#include "properties/property_rows.h"
#include "properties/property_table.h"

namespace Morquil::Properties {

void AddAudioRows(std::vector<Property>& all) {
    using F = morquil::features::AudioMapping;
    FeatureRows<F> rows(all, "audio");
    // clang-format off
    rows.Setting<&F::GetAudioGain, &F::SetAudioGain, &F::GetAudioGainRange>("gain", "Level of all input channels");
    rows.Setting<&F::GetAudioDelay, &F::SetAudioDelay, &F::GetAudioDelayRange>("delay", "Delay of all channels");
    rows.Setting<&F::GetAESAnalogOutputSelect, &F::SetAESAnalogOutputSelect>("aes-analog-output-select", "Whether the shared output is AES");
    rows.Setting<&F::GetAudioMeterChan, &F::SetAudioMeterChan>("meter-channels", "Channels of the meter");
    rows.Setting<&F::GetAnalogInRefLevel, &F::SetAnalogInRefLevel, &F::GetAnaInRefLevelRange>("analog-input-ref-level", "Reference level of the analog input");
    rows.Settings<&F::GetAudioMap, &F::SetAudioMap, &F::IsAudioSelectionAvailable>(morquilAudioMaxOutputChannels, "map", "What an output channel carries");
    rows.Settings<&F::GetAudioInMap, &F::SetAudioInMap>(morquilAudioMaxPairs, "input-map", "What feeds an input pair");
    rows.Command<&F::ResetValues>("reset-values", "Resets the values whose bits are set").As(Kind::Bits);
    // clang-format on
}

}  // namespace Morquil::Properties
