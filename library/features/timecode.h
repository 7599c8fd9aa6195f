#pragma once

#include "features/feature.h"
#include "protocol/blocks/ancillary_data.h"

/// Timecode: source, destination and generator.
class CMorquilTimecode final : public Morquil::Feature<IMorquilTimecode, Morquil::AncillaryDataChangeSet,
                                                       Morquil::AncillaryDataAvailabilityChangeSet> {
public:
    CMorquilTimecode(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetMode(_MorquilAPITimecodeMode mode) override;
    STDMETHODIMP GetMode(_MorquilAPITimecodeMode* mode) override;
    STDMETHODIMP IsModeAvailable(_MorquilAPITimecodeMode mode, LONG* isAvailable) override;
    STDMETHODIMP SetInputLine(unsigned int line) override;
    STDMETHODIMP GetInputLine(unsigned int* line) override;
    STDMETHODIMP SetOutputLine(unsigned int line) override;
    STDMETHODIMP GetOutputLine(unsigned int* line) override;
    STDMETHODIMP GetLineRange(unsigned int frameHeight, unsigned int* min, unsigned int* max) override;
    STDMETHODIMP SetDropFrameMode(_MorquilAPITimecodeDropFrameMode mode) override;
    STDMETHODIMP GetDropFrameMode(_MorquilAPITimecodeDropFrameMode* mode) override;
    STDMETHODIMP IsDropFrameModeAvailable(_MorquilAPIVideoMode outputMode, _MorquilAPITimecodeDropFrameMode mode,
                                          LONG* isAvailable) override;
    STDMETHODIMP SetLossMode(_MorquilAPITimecodeLossMode mode) override;
    STDMETHODIMP GetLossMode(_MorquilAPITimecodeLossMode* mode) override;
    STDMETHODIMP SetSource(_MorquilAPITimecodeSource source) override;
    STDMETHODIMP GetSource(_MorquilAPITimecodeSource* source) override;
    STDMETHODIMP SetGenerateValue(unsigned int timecode) override;
    STDMETHODIMP GetGenerateValue(unsigned int* timecode) override;
    STDMETHODIMP SetJamSyncValue(unsigned int timecode) override;
    STDMETHODIMP GetJamSyncValue(unsigned int* timecode) override;
    STDMETHODIMP SetStartSource(_MorquilAPITimecodeStartSource source) override;
    STDMETHODIMP GetStartSource(_MorquilAPITimecodeStartSource* source) override;
    STDMETHODIMP StartTimecode() override;

protected:
    bool MergeSettings(Morquil::AncillaryDataChangeSet& copy, const Morquil::AncillaryDataChangeSet& incoming) override;
    bool MergeAvailability(Morquil::AncillaryDataAvailabilityChangeSet& copy,
                           const Morquil::AncillaryDataAvailabilityChangeSet& incoming) override;
};
