#include "features/variable_aspect_ratio.h"

using namespace Morquil;
using Settings = VariableAspectRatioChangeSet;
using Availability = VariableAspectRatioAvailabilityChangeSet;

CMorquilVariableAspectRatio::CMorquilVariableAspectRatio(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilVariableAspectRatio, morquilVariableAspectRatioPropertySetId) {}

// clang-format off
STDMETHODIMP CMorquilVariableAspectRatio::SetSizeX(double size) { return SendDecimal(&Settings::sizeXLeft, size); }
STDMETHODIMP CMorquilVariableAspectRatio::GetSizeX(double* size) { return Read(size, &Settings::sizeXLeft); }
STDMETHODIMP CMorquilVariableAspectRatio::GetSizeXRange(double* min, double* max) { return ReadRange(min, max, &Availability::sizeXRange); }
STDMETHODIMP CMorquilVariableAspectRatio::SetSizeY(double size) { return SendDecimal(&Settings::sizeYLeft, size); }
STDMETHODIMP CMorquilVariableAspectRatio::GetSizeY(double* size) { return Read(size, &Settings::sizeYLeft); }
STDMETHODIMP CMorquilVariableAspectRatio::GetSizeYRange(double* min, double* max) { return ReadRange(min, max, &Availability::sizeYRange); }
STDMETHODIMP CMorquilVariableAspectRatio::SetPositionX(double position) { return SendDecimal(&Settings::posXLeft, position); }
STDMETHODIMP CMorquilVariableAspectRatio::GetPositionX(double* position) { return Read(position, &Settings::posXLeft); }
STDMETHODIMP CMorquilVariableAspectRatio::GetPositionXRange(double* min, double* max) { return ReadRange(min, max, &Availability::posXRange); }
STDMETHODIMP CMorquilVariableAspectRatio::SetPositionY(double position) { return SendDecimal(&Settings::posYLeft, position); }
STDMETHODIMP CMorquilVariableAspectRatio::GetPositionY(double* position) { return Read(position, &Settings::posYLeft); }
STDMETHODIMP CMorquilVariableAspectRatio::GetPositionYRange(double* min, double* max) { return ReadRange(min, max, &Availability::posYRange); }
STDMETHODIMP CMorquilVariableAspectRatio::SetTrimX(unsigned int trim) { return Send(&Settings::trimXLeft, trim); }
STDMETHODIMP CMorquilVariableAspectRatio::GetTrimX(unsigned int* trim) { return Read(trim, &Settings::trimXLeft); }
STDMETHODIMP CMorquilVariableAspectRatio::GetTrimXRange(unsigned int* min, unsigned int* max) { return ReadRange(min, max, &Availability::trimXRange); }
STDMETHODIMP CMorquilVariableAspectRatio::SetTrimY(unsigned int trim) { return Send(&Settings::trimYLeft, trim); }
STDMETHODIMP CMorquilVariableAspectRatio::GetTrimY(unsigned int* trim) { return Read(trim, &Settings::trimYLeft); }
STDMETHODIMP CMorquilVariableAspectRatio::GetTrimYRange(unsigned int* min, unsigned int* max) { return ReadRange(min, max, &Availability::trimYRange); }
STDMETHODIMP CMorquilVariableAspectRatio::SetZoomCrop(LONG enabled) { return SendYesNo(&Settings::zoomCrop, enabled); }
STDMETHODIMP CMorquilVariableAspectRatio::GetZoomCrop(LONG* enabled) { return Read(enabled, &Settings::zoomCrop); }
STDMETHODIMP CMorquilVariableAspectRatio::GetLastInputWidth(unsigned int* width) { return Read(width, &Settings::lastInputWidth); }
STDMETHODIMP CMorquilVariableAspectRatio::GetLastInputHeight(unsigned int* height) { return Read(height, &Settings::lastInputHeight); }
STDMETHODIMP CMorquilVariableAspectRatio::GetLastOutputWidth(unsigned int* width) { return Read(width, &Settings::lastOutputWidth); }
STDMETHODIMP CMorquilVariableAspectRatio::GetLastOutputHeight(unsigned int* height) { return Read(height, &Settings::lastOutputHeight); }
STDMETHODIMP CMorquilVariableAspectRatio::ResetValues(unsigned int values) { return Send(&Settings::resetValues, values); }
// clang-format on
