#pragma once

#include "features/feature.h"
#include "protocol/blocks/genlock.h"

/// The reference signal.
class CMorquilReference final
    : public Morquil::Feature<IMorquilReference, Morquil::GenlockChangeSet, Morquil::GenlockAvailabilityChangeSet> {
public:
    CMorquilReference(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetType(_MorquilAPIVideoReferenceType type) override;
    STDMETHODIMP GetType(_MorquilAPIVideoReferenceType* type) override;
    STDMETHODIMP IsGenRefAvailable(_MorquilAPIGenReference genReference, LONG* isAvailable) override;
    STDMETHODIMP SetGenRef(_MorquilAPIGenReference genReference) override;
    STDMETHODIMP GetGenRef(_MorquilAPIGenReference* genReference) override;
    STDMETHODIMP SetLineOffset(int offset) override;
    STDMETHODIMP GetLineOffset(int* offset) override;
    STDMETHODIMP GetLineOffsetRange(_MorquilAPIVideoMode mode, int* min, int* max) override;
    STDMETHODIMP SetPixelOffset(int offset) override;
    STDMETHODIMP GetPixelOffset(int* offset) override;
    STDMETHODIMP GetPixelOffsetRange(_MorquilAPIVideoMode mode, int* min, int* max) override;
    STDMETHODIMP GetSignalLocked(LONG* locked) override;
};
