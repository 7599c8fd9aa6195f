#include "features/mode_3d.h"

using namespace Morquil;
using Settings = Mode3DChangeSet;
using Availability = Mode3DAvailabilityChangeSet;

CMorquil3dMode::CMorquil3dMode(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquil3dMode, morquil3dModePropertySetId) {}

// clang-format off
STDMETHODIMP CMorquil3dMode::SetMode(_MorquilAPI3dMode mode) { return SendWord<Modes3D>(&Settings::mode3D, mode); }
STDMETHODIMP CMorquil3dMode::GetMode(_MorquilAPI3dMode* mode) { return Read(mode, &Settings::mode3D); }
STDMETHODIMP CMorquil3dMode::SetIntensity(int intensity) { return Send(&Settings::intensity2D3D, intensity); }
STDMETHODIMP CMorquil3dMode::GetIntensity(int* intensity) { return Read(intensity, &Settings::intensity2D3D); }
STDMETHODIMP CMorquil3dMode::GetIntensityRange(int* min, int* max) { return ReadRange(min, max, &Availability::intensityRange2D3D); }
STDMETHODIMP CMorquil3dMode::SetDepth(int depth) { return Send(&Settings::depth2D3D, depth); }
STDMETHODIMP CMorquil3dMode::GetDepth(int* depth) { return Read(depth, &Settings::depth2D3D); }
STDMETHODIMP CMorquil3dMode::GetDepthRange(int* min, int* max) { return ReadRange(min, max, &Availability::depthRange2D3D); }
STDMETHODIMP CMorquil3dMode::SetInput3dType(_MorquilAPI3dType type) { return SendWord<Types3D>(&Settings::input3D, type); }
STDMETHODIMP CMorquil3dMode::GetInput3dType(_MorquilAPI3dType* type) { return Read(type, &Settings::input3D); }
STDMETHODIMP CMorquil3dMode::SetOutput3dType(_MorquilAPI3dType type) { return SendWord<Types3D>(&Settings::output3D, type); }
STDMETHODIMP CMorquil3dMode::GetOutput3dType(_MorquilAPI3dType* type) { return Read(type, &Settings::output3D); }
// clang-format on
