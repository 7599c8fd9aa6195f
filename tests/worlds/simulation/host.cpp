#include "tests/worlds/simulation/host.h"

#include <string_view>
#include <utility>
#include <vector>

#include "platform/text.h"
#include "tests/kit/owned_bstr.h"
#include "tests/kit/temporary_folder.h"
#include "tests/worlds/simulation/spoken_keys.h"

namespace Morquil::Testing::Worlds {

namespace {

using Testing::OwnedBstr;

/// No call of the host may take longer, whatever the device does.
constexpr Time callLimit = 1000;

constexpr std::array propertySets{
    morquilDeviceControlPropertySetId,       morquilVideoProcAmpPropertySetId,       morquilNoiseReductionPropertySetId,
    morquilOutputConfigurationPropertySetId, morquilInputConfigurationPropertySetId, morquilNetworkConfigPropertySetId,
    morquilColorCorrectionPropertySetId,     morquilVideoClipPropertySetId,          morquilAspectFillPropertySetId,
    morquilClosedCaptionPropertySetId,       morquilReferencePropertySetId,          morquilTestPatternPropertySetId};

/// The keys that can be set.
const std::vector<const SpokenKey*>& SettableKeys() {
    static const std::vector<const SpokenKey*> settable = [] {
        std::vector<const SpokenKey*> list;
        for (const SpokenKey& key : SpokenKeys()) {
            if (key.set) {
                list.push_back(&key);
            }
        }
        return list;
    }();
    return settable;
}

const Testing::TemporaryFolder& Folder() {
    static const Testing::TemporaryFolder folder;
    return folder;
}

OwnedBstr Bstr(std::string_view text) {
    return OwnedBstr(BstrFromUtf8(text));
}

}  // namespace

/// Exists while a thread is in a call of the library.
class Host::Call {
public:
    explicit Call(Host& host) : host_(host) { ++host_.callsInProgress_[Scheduler::Instance().Current()]; }
    ~Call() {
        --host_.callsInProgress_[Scheduler::Instance().Current()];
        host_.trace_.Require(Scheduler::Instance().Now() - begin_ <= callLimit, "a call takes too long");
    }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

private:
    Host& host_;
    const Time begin_ = Scheduler::Instance().Now();
};

STDMETHODIMP Host::ConnectionWatcher::Connected() {
    host->model_.OnConnected(number);
    host->InsideCallback();
    host->model_.ConnectedReturns();
    return S_OK;
}

STDMETHODIMP Host::ConnectionWatcher::Disconnected(_MorquilConnectToFailure reason) {
    host->model_.OnDisconnected(number, reason);
    host->InsideCallback();
    host->onDisconnected_();
    host->model_.DisconnectedReturns();
    return S_OK;
}

STDMETHODIMP Host::PropertyWatcher::PropertyChanged(_MorquilPropertySetId set) {
    host->model_.OnChanged(number, set);
    host->InsideCallback();
    host->model_.ChangedReturns(set);
    return S_OK;
}

Host::Host(Dice& dice, Trace& trace, Model& model, std::size_t firstObserver, std::function<void()> onDisconnected)
    : dice_(dice), trace_(trace), model_(model), onDisconnected_(std::move(onDisconnected)) {
    std::size_t number = firstObserver;
    for (ConnectionWatcher& watcher : connectionWatchers_) {
        watcher.host = this;
        watcher.number = number++;
    }
    for (PropertyWatcher& watcher : propertyWatchers_) {
        watcher.host = this;
        watcher.number = number++;
    }
}

void Host::InsideCallback() {
    Scheduler::Instance().GiveWay();
    for (int actions = 0; actions < 2 && dice_.OneIn(4) && HasDevice(); ++actions) {
        dice_.OneIn(16) ? ReleaseDevice() : Act();
    }
    Scheduler::Instance().GiveWay();
}

bool Host::AttemptIsOver() const {
    return !connects_ && (timerThread_ == 0 || Scheduler::Instance().HasEnded(timerThread_));
}

void Host::Connect(bool isAsynchronous) {
    const OwnedBstr address = Bstr("device.test");
    _MorquilConnectToFailure reason = morquilConnectWarningIncompatibleFirmware;
    trace_.Note(isAsynchronous ? "connect asynchronously" : "connect");
    const Time begin = Scheduler::Instance().Now();
    model_.ConnectBegins(isAsynchronous ? &connectionWatchers_[0].number : nullptr);
    if (isAsynchronous) {
        const HRESULT result = device_->Connect(address.Get(), &connectionWatchers_[0], &reason);
        timerThread_ = Scheduler::Instance().LastStarted();
        trace_.Require(result == S_FALSE && reason == morquilConnectToFailureNoFailure, "cannot connect");
        return;
    }
    connects_ = true;
    ++callsInProgress_[Scheduler::Instance().Current()];
    const HRESULT result = device_->Connect(address.Get(), nullptr, &reason);
    --callsInProgress_[Scheduler::Instance().Current()];
    connects_ = false;
    trace_.Note("connect returns " + std::to_string(result));
    model_.CheckConnectResult(result, reason, Scheduler::Instance().Now() - begin);
}

void Host::AddObservers() {
    for (int count = 0; count < 8; ++count) {
        ChangeConnectionObservers();
        AddPropertyObserver();
    }
}

void Host::Act() {
    switch (dice_.Below(20)) {
        case 0:
            return AddPropertyObserver();
        case 1:
            return RemovePropertyObserver();
        case 2:
            return ChangeConnectionObservers();
        case 3:
            return Query();
        case 4:
            return SetBadText();
        case 5:
            return dice_.OneIn(4) ? Disconnect() : ReadAll();
        case 6:
            return dice_.OneIn(8) ? ReleaseDevice() : ReadAll();
        case 7:
            return dice_.OneIn(2) ? Load() : Save();
        case 8:
        case 9:
            return Read(dice_.OneOf(SpokenKeys()));
        default:
            return Set(*dice_.OneOf(SettableKeys()));
    }
}

template <class Interface>
Interface* Host::Ask(const IID& iid) {
    void* feature = nullptr;
    trace_.Require(device_->QueryInterface(iid, &feature) == S_OK, "an interface is missing");
    ++references_;
    return static_cast<Interface*>(feature);
}

void Host::ReleaseFeature(IUnknown* feature) {
    const ULONG expected = --references_ + (AttemptIsOver() ? 0 : 1);
    trace_.Require(feature->Release() == expected, "the count of references is wrong");
}

void Host::Query() {
    const Call call(*this);
    trace_.Note("query");
    ReleaseFeature(Ask<IUnknown>(IID_IUnknown));
    void* feature = this;
    trace_.Require(
        device_->QueryInterface(IID_IMorquilConnectionObserver, &feature) == E_NOINTERFACE && feature == nullptr,
        "an unexpected interface");
}

void Host::Set(const SpokenKey& key) {
    const Call call(*this);
    const std::uint32_t value = dice_.Below(static_cast<std::uint32_t>(key.values.size()));
    trace_.Note("set " + key.key + " " + key.values[value]);
    model_.SetterBegins(key.header, key.LinesOf(value), HasEchoes(key.header));
    auto* const feature = Ask<IUnknown>(*key.iid);
    trace_.Require(key.set(*feature, value) == S_OK, "cannot set " + key.key);
    ReleaseFeature(feature);
}

void Host::SetBadText() {
    const Call call(*this);
    trace_.Note("set a bad text");
    auto* const network = Ask<IMorquilNetworkConfig>(IID_IMorquilNetworkConfig);
    trace_.Require(network->SetFriendlyName(Bstr("a\n\nMORQUIL DEVICE:\nPanel lock: true\n").Get()) == E_INVALIDARG,
                   "a text can end its line");
    ReleaseFeature(network);
}

void Host::Read(const SpokenKey& key) {
    const Call call(*this);
    auto* const feature = Ask<IUnknown>(*key.iid);
    const auto value = key.read(*feature);
    ReleaseFeature(feature);
    trace_.Note("read " + key.key + " " + value.value_or("(nothing)"));
    model_.Read(key.header, key.Name(), value);
}

/// Keys of an interface are mostly adjacent: it is queried once.
void Host::ReadAll() {
    const Call call(*this);
    trace_.Note("read all");
    IUnknown* feature = nullptr;
    const IID* iid = nullptr;
    for (const SpokenKey& key : SpokenKeys()) {
        if (key.iid != iid) {
            feature != nullptr ? ReleaseFeature(feature) : static_cast<void>(0);
            feature = Ask<IUnknown>(*key.iid);
            iid = key.iid;
        }
        model_.Read(key.header, key.Name(), key.read(*feature));
    }
    ReleaseFeature(feature);
}

void Host::AddPropertyObserver() {
    const Call call(*this);
    PropertyWatcher& watcher = dice_.OneOf(propertyWatchers_);
    const _MorquilPropertySetId set = dice_.OneOf(propertySets);
    trace_.Note("add property observer " + std::to_string(watcher.number));
    model_.PropertyObserverAdded(watcher.number, set, device_->AddPropertyObserver(&watcher, set));
}

void Host::RemovePropertyObserver() {
    const Call call(*this);
    PropertyWatcher& watcher = dice_.OneOf(propertyWatchers_);
    const _MorquilPropertySetId set = dice_.OneOf(propertySets);
    trace_.Note("remove property observer " + std::to_string(watcher.number));
    model_.PropertyObserverRemoved(watcher.number, set, device_->RemovePropertyObserver(&watcher, set));
}

void Host::ChangeConnectionObservers() {
    const Call call(*this);
    ConnectionWatcher& watcher = dice_.OneOf(connectionWatchers_);
    if (dice_.OneIn(2)) {
        trace_.Note("add connection observer " + std::to_string(watcher.number));
        model_.ConnectionObserverAdded(watcher.number, device_->AddConnectionObserver(&watcher));
    } else {
        trace_.Note("remove connection observer " + std::to_string(watcher.number));
        model_.ConnectionObserverRemoved(watcher.number, device_->RemoveConnectionObserver(&watcher));
    }
}

void Host::Disconnect() {
    const Call call(*this);
    trace_.Note("disconnect");
    const bool wasEnding = model_.IsEnding();
    model_.DisconnectBegins();
    device_->Disconnect();
    trace_.Note("disconnect returns");
    model_.DisconnectReturned(wasEnding);
}

bool Host::OthersAreInCalls() const {
    for (const auto& [thread, calls] : callsInProgress_) {
        if (thread != Scheduler::Instance().Current() && calls > 0) {
            return true;
        }
    }
    return false;
}

/// The last reference is not released while another thread is using it.
void Host::ReleaseDevice() {
    if (!HasDevice() || OthersAreInCalls() || references_ > 1) {
        return;
    }
    const Call call(*this);
    trace_.Note("release");
    const bool isLast = AttemptIsOver();
    model_.ReleaseBegins(isLast);
    CMorquilDevice* const device = std::exchange(device_, nullptr);
    trace_.Require(device->Release() == (isLast ? 0U : 1U), "the last count of references is wrong");
    trace_.Note("release returns");
}

void Host::Load() {
    const Call call(*this);
    static const std::array<std::string, 2> paths{
        Folder().Make("still", "junk\n\nTEST PATTERN:\nMotion: false\n\n"),
        Folder().Make("moving", "TEST PATTERN:\r\nMotion: true\r\n\r\nPRESET:\nPresetName0: a\n\n")};
    const std::uint32_t isMoving = dice_.Below(2);
    trace_.Note(isMoving != 0 ? "load moving" : "load still");
    model_.SetterBegins("TEST PATTERN", {{"Motion", isMoving != 0 ? "true" : "false"}}, false);
    trace_.Require(device_->LoadSettingsFile(Bstr(paths[isMoving]).Get()) == S_FALSE, "wrong answer of a load");
}

void Host::Save() {
    const Call call(*this);
    static const std::string path = Folder().PathOf("saved");
    trace_.Note("save");
    trace_.Require(device_->SaveSettingsFile(Bstr(path).Get()) == S_FALSE, "wrong answer of a save");
}

void Host::CheckObserversReleased() {
    for (const ConnectionWatcher& watcher : connectionWatchers_) {
        trace_.Require(watcher.References() == 0, "a connection observer is kept");
    }
    for (const PropertyWatcher& watcher : propertyWatchers_) {
        trace_.Require(watcher.References() == 0, "a property observer is kept");
    }
}

}  // namespace Morquil::Testing::Worlds
