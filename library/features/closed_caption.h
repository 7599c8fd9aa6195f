#pragma once

#include "features/feature.h"
#include "protocol/blocks/ancillary_data.h"

/// Closed captions.
class CMorquilClosedCaption final : public Morquil::Feature<IMorquilClosedCaption, Morquil::AncillaryDataChangeSet,
                                                            Morquil::AncillaryDataAvailabilityChangeSet> {
public:
    CMorquilClosedCaption(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetEnabled(LONG enabled) override;
    STDMETHODIMP GetEnabled(LONG* enabled) override;
    STDMETHODIMP SetInputLine(unsigned int line) override;
    STDMETHODIMP GetInputLine(unsigned int* line) override;
    STDMETHODIMP GetInputLineRange(unsigned int* min, unsigned int* max) override;
    STDMETHODIMP SetOutputLine(unsigned int line) override;
    STDMETHODIMP GetOutputLine(unsigned int* line) override;
    STDMETHODIMP GetOutputLineRange(unsigned int* min, unsigned int* max) override;
    STDMETHODIMP SetService2Source(_MorquilAPICCService2Source source) override;
    STDMETHODIMP GetService2Source(_MorquilAPICCService2Source* source) override;
    STDMETHODIMP SetService1Language(_MorquilAPICCServiceLanguage language) override;
    STDMETHODIMP GetService1Language(_MorquilAPICCServiceLanguage* language) override;
    STDMETHODIMP SetService2Language(_MorquilAPICCServiceLanguage language) override;
    STDMETHODIMP GetService2Language(_MorquilAPICCServiceLanguage* language) override;
    STDMETHODIMP ResetValues(unsigned int values) override;

protected:
    bool MergeSettings(Morquil::AncillaryDataChangeSet& copy, const Morquil::AncillaryDataChangeSet& incoming) override;
    bool MergeAvailability(Morquil::AncillaryDataAvailabilityChangeSet& copy,
                           const Morquil::AncillaryDataAvailabilityChangeSet& incoming) override;
};
