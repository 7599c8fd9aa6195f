#include "features/reference.h"

using namespace Morquil;
using Settings = GenlockChangeSet;
using Availability = GenlockAvailabilityChangeSet;

CMorquilReference::CMorquilReference(IUnknown& owner, IMessageQueue& queue)
    : Feature(owner, queue, IID_IMorquilReference, morquilReferencePropertySetId) {}

// clang-format off
STDMETHODIMP CMorquilReference::SetType(_MorquilAPIVideoReferenceType type) { return SendWord<ReferenceTypes>(&Settings::type, type); }
STDMETHODIMP CMorquilReference::GetType(_MorquilAPIVideoReferenceType* type) { return Read(type, &Settings::type); }
STDMETHODIMP CMorquilReference::SetGenRef(_MorquilAPIGenReference genReference) { return SendWord<GenReferences>(&Settings::genReference, genReference); }
STDMETHODIMP CMorquilReference::GetGenRef(_MorquilAPIGenReference* genReference) { return Read(genReference, &Settings::genReference); }
STDMETHODIMP CMorquilReference::SetLineOffset(int offset) { return Send(&Settings::lineOffset, offset); }
STDMETHODIMP CMorquilReference::GetLineOffset(int* offset) { return Read(offset, &Settings::lineOffset); }
STDMETHODIMP CMorquilReference::GetLineOffsetRange(_MorquilAPIVideoMode mode, int* min, int* max) { return ReadRange(min, max, &Availability::lineOffsetRange, IndexOf(mode)); }
STDMETHODIMP CMorquilReference::SetPixelOffset(int offset) { return Send(&Settings::pixelOffset, offset); }
STDMETHODIMP CMorquilReference::GetPixelOffset(int* offset) { return Read(offset, &Settings::pixelOffset); }
STDMETHODIMP CMorquilReference::GetSignalLocked(LONG* locked) { return Read(locked, &Settings::signalLocked); }
// clang-format on

/// Returns E_FAIL even when the flag is valid: hosts read the flag and rely on the failure.
STDMETHODIMP CMorquilReference::IsGenRefAvailable(_MorquilAPIGenReference genReference, LONG* isAvailable) {
    const HRESULT result = QueryList(&Availability::genReferences, genReference, isAvailable);
    return result == S_OK ? E_FAIL : result;
}

/// The line offsets alone decide whether a mode counts as reported; missing pixel offsets read as 0 to 0.
STDMETHODIMP CMorquilReference::GetPixelOffsetRange(_MorquilAPIVideoMode mode, int* min, int* max) {
    const HRESULT result = ReadRange(min, max, &Availability::lineOffsetRange, IndexOf(mode));
    if (result == S_OK && ReadRange(min, max, &Availability::pixelOffsetRange, IndexOf(mode)) != S_OK) {
        *min = *max = 0;
    }
    return result;
}
