#pragma once

#include "features/feature.h"
#include "protocol/blocks/mode_3d.h"

/// 3D processing.
class CMorquil3dMode final
    : public Morquil::Feature<IMorquil3dMode, Morquil::Mode3DChangeSet, Morquil::Mode3DAvailabilityChangeSet> {
public:
    CMorquil3dMode(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetMode(_MorquilAPI3dMode mode) override;
    STDMETHODIMP GetMode(_MorquilAPI3dMode* mode) override;
    STDMETHODIMP SetIntensity(int intensity) override;
    STDMETHODIMP GetIntensity(int* intensity) override;
    STDMETHODIMP GetIntensityRange(int* min, int* max) override;
    STDMETHODIMP SetDepth(int depth) override;
    STDMETHODIMP GetDepth(int* depth) override;
    STDMETHODIMP GetDepthRange(int* min, int* max) override;
    STDMETHODIMP SetInput3dType(_MorquilAPI3dType type) override;
    STDMETHODIMP GetInput3dType(_MorquilAPI3dType* type) override;
    STDMETHODIMP SetOutput3dType(_MorquilAPI3dType type) override;
    STDMETHODIMP GetOutput3dType(_MorquilAPI3dType* type) override;
};
