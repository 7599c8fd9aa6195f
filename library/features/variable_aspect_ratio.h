#pragma once

#include "features/feature.h"
#include "protocol/blocks/variable_aspect_ratio.h"

/// Size and position of the picture. The block has a left and a right side; every method applies to the left one.
class CMorquilVariableAspectRatio final
    : public Morquil::Feature<IMorquilVariableAspectRatio, Morquil::VariableAspectRatioChangeSet,
                              Morquil::VariableAspectRatioAvailabilityChangeSet> {
public:
    CMorquilVariableAspectRatio(IUnknown& owner, Morquil::IMessageQueue& queue);

    STDMETHODIMP SetSizeX(double size) override;
    STDMETHODIMP GetSizeX(double* size) override;
    STDMETHODIMP GetSizeXRange(double* min, double* max) override;
    STDMETHODIMP SetSizeY(double size) override;
    STDMETHODIMP GetSizeY(double* size) override;
    STDMETHODIMP GetSizeYRange(double* min, double* max) override;
    STDMETHODIMP SetPositionX(double position) override;
    STDMETHODIMP GetPositionX(double* position) override;
    STDMETHODIMP GetPositionXRange(double* min, double* max) override;
    STDMETHODIMP SetPositionY(double position) override;
    STDMETHODIMP GetPositionY(double* position) override;
    STDMETHODIMP GetPositionYRange(double* min, double* max) override;
    STDMETHODIMP SetTrimX(unsigned int trim) override;
    STDMETHODIMP GetTrimX(unsigned int* trim) override;
    STDMETHODIMP GetTrimXRange(unsigned int* min, unsigned int* max) override;
    STDMETHODIMP SetTrimY(unsigned int trim) override;
    STDMETHODIMP GetTrimY(unsigned int* trim) override;
    STDMETHODIMP GetTrimYRange(unsigned int* min, unsigned int* max) override;
    STDMETHODIMP SetZoomCrop(LONG enabled) override;
    STDMETHODIMP GetZoomCrop(LONG* enabled) override;
    STDMETHODIMP GetLastInputWidth(unsigned int* width) override;
    STDMETHODIMP GetLastInputHeight(unsigned int* height) override;
    STDMETHODIMP GetLastOutputWidth(unsigned int* width) override;
    STDMETHODIMP GetLastOutputHeight(unsigned int* height) override;
    STDMETHODIMP ResetValues(unsigned int values) override;
};
