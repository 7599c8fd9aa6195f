#include "device/device.h"

#include <new>
#include <utility>

#include "core/callback_scope.h"
#include "core/lock.h"
#include "platform/text.h"
#include "settings/settings_file.h"

using namespace Morquil;
using QRN::Core::Lock;

CMorquilDevice::CMorquilDevice(std::unique_ptr<AbstractComms> comms, std::int32_t initialStateWait)
    : CObservablePropertySet(morquilDeviceControlPropertySetId),
      MorquilTextProtocolClient(std::move(comms)),
      initialStateWait_(initialStateWait) {
    ++disconnectNoticeCount_;
    connectEvent_.Create();
}

CMorquilDevice::~CMorquilDevice() {
    // Before anything that the connection thread uses is destroyed.
    Stop();
}

void* CMorquilDevice::FindInterface(REFIID iid) {
    if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IMorquilDevice)) {
        return static_cast<IMorquilDevice*>(this);
    }
    if (IsEqualIID(iid, IID_IMorquilDelivery)) {
        return static_cast<IMorquilDelivery*>(&delivery_);
    }
    for (const auto& feature : features_.HandedOut()) {
        if (IsEqualIID(iid, feature->Iid())) {
            return feature->AsUnknown();
        }
    }
    return nullptr;
}

STDMETHODIMP_(ULONG) CMorquilDevice::Release() {
    // Meanwhile a callback on another thread may take and release a reference of its own.
    const Hold hold(*this);
    const ULONG remaining = DropReference();
    if (remaining == 0 && !lastReferenceGone_.exchange(true)) {
        LastReferenceGone();
    }
    return remaining;
}

/// Ends the connection; no one is left to notify. Routines that are still running keep the memory with their holds.
void CMorquilDevice::LastReferenceGone() {
    disconnectNoticeCount_ = 0;
    settingsLoader_.Stop();
    SilenceProperties();
    MessageReceipts().Silence();
    if (QRN::Core::CallbackScope::OnThisThread()) {
        connectionObservers_.CancelRounds();
    }
    Stop();
    GiveHoldBack();
}

void CMorquilDevice::GiveHoldBack() {
    if (--holds_ == 0) {
        delete this;
    }
}

STDMETHODIMP CMorquilDevice::AddConnectionObserver(IMorquilConnectionObserver* observer) {
    return connectionObservers_.Add(observer);
}

STDMETHODIMP CMorquilDevice::RemoveConnectionObserver(IMorquilConnectionObserver* observer) {
    return connectionObservers_.Remove(observer);
}

STDMETHODIMP CMorquilDevice::AddPropertyObserver(IMorquilPropertyObserver* observer,
                                                 _MorquilPropertySetId propertySet) {
    CObservablePropertySet* const set = FindPropertySet(propertySet);
    return set != nullptr ? set->AddObserver(observer) : E_FAIL;
}

STDMETHODIMP CMorquilDevice::RemovePropertyObserver(IMorquilPropertyObserver* observer,
                                                    _MorquilPropertySetId propertySet) {
    CObservablePropertySet* const set = FindPropertySet(propertySet);
    return set != nullptr ? set->RemoveObserver(observer) : E_FAIL;
}

/// The set with this id, or null. The alignment's set is never found.
CObservablePropertySet* CMorquilDevice::FindPropertySet(_MorquilPropertySetId propertySet) {
    if (propertySet == PropertySet()) {
        return this;
    }
    for (const auto& feature : features_.HandedOut()) {
        if (propertySet == feature->PropertySet()) {
            return feature.get();
        }
    }
    return nullptr;
}

template <class Out, class FieldType>
HRESULT CMorquilDevice::ReadDevice(Out* out, FieldType MorquilDeviceChangeSet::*member) {
    if (out == nullptr) {
        return E_POINTER;
    }
    Lock lock(mirrorLock_);
    const FieldType& field = deviceCache_.*member;
    if (!field.IsPresent()) {
        return E_FAIL;
    }
    *out = static_cast<Out>(field.Get());
    return S_OK;
}

STDMETHODIMP CMorquilDevice::GetDeviceName(BSTR* name) {
    if (name == nullptr) {
        return E_POINTER;
    }
    Lock lock(mirrorLock_);
    if (!deviceCache_.modelName.IsPresent()) {
        return E_FAIL;
    }
    *name = BstrFromUtf8(deviceCache_.modelName.Get());
    return *name != nullptr ? S_OK : E_FAIL;
}

STDMETHODIMP CMorquilDevice::GetSoftwareVersion(UINT* version) {
    return ReadDevice(version, &MorquilDeviceChangeSet::softwareVersion);
}

STDMETHODIMP CMorquilDevice::GetFPGAVersion(UINT* version) {
    return ReadDevice(version, &MorquilDeviceChangeSet::fpgaVersion);
}

STDMETHODIMP CMorquilDevice::GetPanelLock(LONG* lock) {
    return ReadDevice(lock, &MorquilDeviceChangeSet::panelLock);
}

STDMETHODIMP CMorquilDevice::GetRemoteLock(LONG* lock) {
    return ReadDevice(lock, &MorquilDeviceChangeSet::remoteLock);
}

/// The answer is 2, not 1, where updating is supported: hosts test for the bit itself.
STDMETHODIMP CMorquilDevice::GetNetworkUpdateSupported(LONG* supported) {
    if (supported == nullptr) {
        return E_POINTER;
    }
    *supported = static_cast<LONG>(protocolVersionFlags_ & networkUpdateFlag);
    return S_OK;
}

STDMETHODIMP CMorquilDevice::IsConversionSupported(_MorquilAPIVideoMode input, _MorquilAPIVideoMode output,
                                                   _MorquilAPIAspectRatio aspectRatio, LONG* supported) {
    if (supported == nullptr) {
        return E_POINTER;
    }
    const auto index = [](auto value) { return static_cast<std::size_t>(static_cast<std::int32_t>(value)); };
    Lock lock(mirrorLock_);
    *supported = conversionsCache_.aspectRatio.Has(index(input), index(output), index(aspectRatio)) ? 1 : 0;
    return S_OK;
}

/// Observers are notified of the device's answer as of any other change of its locks: it is not checked for being an
/// echo.
STDMETHODIMP CMorquilDevice::SetPanelLock(LONG lock) {
    try {
        auto message = std::make_unique<MorquilDeviceMessage>();
        message->panelLock.Set(lock != 0);
        message->recordSentText = false;
        return Queue(std::move(message));
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

/// The block as a settings file holds it: the copy of the first feature that keeps the block. The device's own block is
/// kept here.
std::string CMorquilDevice::SettingsTextOf(std::size_t place) {
    if (place == placeOf<MorquilDeviceChangeSet>) {
        Lock lock(mirrorLock_);
        MorquilDeviceChangeSet saved = deviceCache_;
        ClearUnsaved(saved);
        return BlockText<MorquilDeviceChangeSet>(saved);
    }
    for (const auto& feature : features_.All()) {
        if (feature->KeepsSettings(place)) {
            return feature->GetSettingsText();
        }
    }
    return {};
}

/// Everything that was known at one moment of a connection, or nothing after its end.
std::string CMorquilDevice::SettingsText() {
    Lock wholeMirror(wholeMirrorLock_);
    std::string text;
    for (const std::size_t place : savedBlocks) {
        text += SettingsTextOf(place) + '\n';
    }
    return text;
}

/// The path in the form that the system accepts. A path longer than any system allows names no file.
static std::string NarrowPath(BSTR path) {
    constexpr std::size_t longestPath = 1023;
    std::string narrow = Utf8FromBstr(path);
    return narrow.size() <= longestPath ? narrow : std::string();
}

/// S_FALSE means that the file was written, S_OK that it could not be opened; hosts rely on this.
STDMETHODIMP CMorquilDevice::SaveSettingsFile(BSTR path) {
    if (path == nullptr) {
        return E_INVALIDARG;
    }
    try {
        return WriteSettingsFile(NarrowPath(path), SettingsText()) ? S_FALSE : S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

/// Returns S_FALSE whatever the file holds; hosts rely on this.
STDMETHODIMP CMorquilDevice::LoadSettingsFile(BSTR path) {
    if (path == nullptr) {
        return E_INVALIDARG;
    }
    const Hold hold(*this);
    try {
        settingsLoader_.Load(NarrowPath(path));
    } catch (const std::bad_alloc&) {
        // Nothing could be loaded; that is not reported either.
    }
    return S_FALSE;
}
