#pragma once

#include "features/feature.h"
#include "protocol/blocks/ancillary_data.h"

/// The active format description.
class CMorquilVideoIndex final : public Morquil::Feature<IMorquilVideoIndex, Morquil::AncillaryDataChangeSet,
                                                         Morquil::AncillaryDataAvailabilityChangeSet> {
public:
    CMorquilVideoIndex(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetIndexReaction(_MorquilAPIVideoIndexReaction reaction) override;
    STDMETHODIMP GetIndexReaction(_MorquilAPIVideoIndexReaction* reaction) override;
    STDMETHODIMP SetAFDInsertType(_MorquilAPIAFDInsertType type) override;
    STDMETHODIMP GetAFDInsertType(_MorquilAPIAFDInsertType* type) override;
    STDMETHODIMP IsAFDInsertTypeAvailable(_MorquilAPIAFDInsertType type, LONG* isAvailable) override;
    STDMETHODIMP SetAFDOutputLine(unsigned int line) override;
    STDMETHODIMP GetAFDOutputLine(unsigned int* line) override;
    STDMETHODIMP GetAFDOutputLineRange(unsigned int frameHeight, unsigned int* min, unsigned int* max) override;

protected:
    bool MergeSettings(Morquil::AncillaryDataChangeSet& copy, const Morquil::AncillaryDataChangeSet& incoming) override;
    bool MergeAvailability(Morquil::AncillaryDataAvailabilityChangeSet& copy,
                           const Morquil::AncillaryDataAvailabilityChangeSet& incoming) override;
};
