#include "features/align.h"

using namespace Morquil;
using Settings = AlignChangeSet;
using Availability = VariableAspectRatioAvailabilityChangeSet;

CMorquilAlign::CMorquilAlign(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilAlign, morquilAlignPropertySetId) {}

// clang-format off
STDMETHODIMP CMorquilAlign::SetSizeX(double size) { return SendDecimal(&Settings::sizeXLeft, size); }
STDMETHODIMP CMorquilAlign::GetSizeX(double* size) { return Read(size, &Settings::sizeXLeft); }
STDMETHODIMP CMorquilAlign::GetSizeXRange(double* min, double* max) { return ReadRange(min, max, &Availability::sizeXRange); }
STDMETHODIMP CMorquilAlign::SetSizeY(double size) { return SendDecimal(&Settings::sizeYLeft, size); }
STDMETHODIMP CMorquilAlign::GetSizeY(double* size) { return Read(size, &Settings::sizeYLeft); }
STDMETHODIMP CMorquilAlign::GetSizeYRange(double* min, double* max) { return ReadRange(min, max, &Availability::sizeYRange); }
STDMETHODIMP CMorquilAlign::SetPositionX(double position) { return SendDecimal(&Settings::posXLeft, position); }
STDMETHODIMP CMorquilAlign::GetPositionX(double* position) { return Read(position, &Settings::posXLeft); }
STDMETHODIMP CMorquilAlign::GetPositionXRange(double* min, double* max) { return ReadRange(min, max, &Availability::posXRange); }
STDMETHODIMP CMorquilAlign::SetPositionY(double position) { return SendDecimal(&Settings::posYLeft, position); }
STDMETHODIMP CMorquilAlign::GetPositionY(double* position) { return Read(position, &Settings::posYLeft); }
STDMETHODIMP CMorquilAlign::GetPositionYRange(double* min, double* max) { return ReadRange(min, max, &Availability::posYRange); }
STDMETHODIMP CMorquilAlign::SetTrimX(unsigned int trim) { return Send(&Settings::trimXLeft, trim); }
STDMETHODIMP CMorquilAlign::GetTrimX(unsigned int* trim) { return Read(trim, &Settings::trimXLeft); }
STDMETHODIMP CMorquilAlign::GetTrimXRange(unsigned int* min, unsigned int* max) { return ReadRange(min, max, &Availability::trimXRange); }
STDMETHODIMP CMorquilAlign::SetTrimY(unsigned int trim) { return Send(&Settings::trimYLeft, trim); }
STDMETHODIMP CMorquilAlign::GetTrimY(unsigned int* trim) { return Read(trim, &Settings::trimYLeft); }
STDMETHODIMP CMorquilAlign::GetTrimYRange(unsigned int* min, unsigned int* max) { return ReadRange(min, max, &Availability::trimYRange); }
STDMETHODIMP CMorquilAlign::GetLastInputWidth(unsigned int* width) { return Read(width, &Settings::lastInputWidth); }
STDMETHODIMP CMorquilAlign::GetLastInputHeight(unsigned int* height) { return Read(height, &Settings::lastInputHeight); }
STDMETHODIMP CMorquilAlign::GetLastOutputWidth(unsigned int* width) { return Read(width, &Settings::lastOutputWidth); }
STDMETHODIMP CMorquilAlign::GetLastOutputHeight(unsigned int* height) { return Read(height, &Settings::lastOutputHeight); }
STDMETHODIMP CMorquilAlign::ResetValues(unsigned int values) { return Send(&Settings::resetValues, values); }
// clang-format on
