#include "features/device_filenames.h"

using namespace Morquil;
using Settings = DeviceFilenamesChangeSet;

// In bytes of UTF-8, including the terminating zero.
static constexpr std::size_t stillFrameNameLimit = 51;

CMorquilDeviceFilenames::CMorquilDeviceFilenames(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilDeviceFilenames, morquilDeviceFilenamesPropertySetId) {}

// clang-format off
STDMETHODIMP CMorquilDeviceFilenames::GetStillFrameName(BSTR* name) { return ReadText(name, &Settings::stillFrameName); }
STDMETHODIMP CMorquilDeviceFilenames::SetStillFrameName(BSTR name) { return SendText(&Settings::stillFrameName, name, stillFrameNameLimit); }
// clang-format on
