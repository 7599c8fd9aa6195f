#pragma once

#include "features/feature.h"
#include "protocol/blocks/test_pattern.h"

/// The test pattern generator.
class CMorquilTestPattern final : public Morquil::Feature<IMorquilTestPattern, Morquil::TestPatternChangeSet,
                                                          Morquil::TestPatternAvailabilityChangeSet> {
public:
    CMorquilTestPattern(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetOutput(_MorquilAPITestPattern pattern) override;
    STDMETHODIMP GetOutput(_MorquilAPITestPattern* pattern) override;
    STDMETHODIMP SetNoSignal(_MorquilAPITestPattern pattern) override;
    STDMETHODIMP GetNoSignal(_MorquilAPITestPattern* pattern) override;
    STDMETHODIMP SetTone(_MorquilAPITestTone tone) override;
    STDMETHODIMP GetTone(_MorquilAPITestTone* tone) override;
    STDMETHODIMP SetMotion(LONG enabled) override;
    STDMETHODIMP SetHorizMotion(int rate) override;
    STDMETHODIMP SetVertMotion(int rate) override;
    STDMETHODIMP GetMotion(LONG* enabled) override;
    STDMETHODIMP GetHorizMotion(int* rate) override;
    STDMETHODIMP GetVertMotion(int* rate) override;
    STDMETHODIMP GetMotionRange(int* min, int* max) override;
    STDMETHODIMP IsTestPatternAvailable(_MorquilAPITestPattern pattern, LONG* isAvailable) override;
    STDMETHODIMP IsTestToneAvailable(_MorquilAPITestTone tone, LONG* isAvailable) override;
    STDMETHODIMP IsMotionAvailable(LONG* isAvailable) override;
};
