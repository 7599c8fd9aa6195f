#include "tests/worlds/simulation/delivery_host.h"

#include <utility>

#include "platform/text.h"
#include "tests/kit/owned_bstr.h"
#include "tests/kit/temporary_folder.h"

namespace Morquil::Testing::Worlds {
namespace {

using Testing::OwnedBstr;
using Testing::Utf16;

/// A number that a host can set.
struct Setter {
    const char* header;
    HRESULT (*set)(CMorquilDevice& device, int value);
};

template <class Interface>
HRESULT SetWith(CMorquilDevice& device, const IID& iid, HRESULT (STDMETHODCALLTYPE Interface::*setter)(int),
                int value) {
    void* out = nullptr;
    device.QueryInterface(iid, &out);
    auto* const feature = static_cast<Interface*>(out);
    const HRESULT result = (feature->*setter)(value);
    feature->Release();
    return result;
}

// clang-format off
constexpr std::array setters{
    Setter{"VIDEO PROC AMP", [](CMorquilDevice& device, int value)
        { return SetWith(device, IID_IMorquilVideoProcAmp, &IMorquilVideoProcAmp::SetGain, value); }},
    Setter{"VIDEO PROC AMP", [](CMorquilDevice& device, int value)
        { return SetWith(device, IID_IMorquilVideoProcAmp, &IMorquilVideoProcAmp::SetHue, value); }},
    Setter{"VIDEO ADJUST", [](CMorquilDevice& device, int value)
        { return SetWith(device, IID_IMorquilColorCorrection, &IMorquilColorCorrection::SetRed, value); }},
    Setter{"GENLOCK", [](CMorquilDevice& device, int value)
        { return SetWith(device, IID_IMorquilReference, &IMorquilReference::SetLineOffset, value); }}};
// clang-format on

}  // namespace

/// Exists while a thread is in a call of the library.
class DeliveryHost::Call {
public:
    explicit Call(DeliveryHost& host) : calls_(host.calls_[Scheduler::Instance().Current()]) { ++calls_; }
    ~Call() { --calls_; }
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

private:
    int& calls_;
};

DeliveryHost::DeliveryHost(Dice& dice, Trace& trace, Values& values, ExpectedReceipts& receipts,
                           ExpectedReports& reports)
    : dice_(dice), trace_(trace), values_(values), receipts_(receipts), reports_(reports) {
    for (ReceiptWatcher& watcher : receiptWatchers_) {
        watcher.host = this;
    }
    for (std::size_t number = 0; number < reportWatchers_.size(); ++number) {
        reportWatchers_[number].host = this;
        reportWatchers_[number].number = number;
    }
}

STDMETHODIMP DeliveryHost::ReceiptWatcher::Answered(UINT64 receipt, UINT acknowledged, UINT refused, UINT kept) {
    host->receipts_.OnAnswered(receipt, acknowledged, refused, kept);
    return host->InsideCallback();
}

STDMETHODIMP DeliveryHost::ReceiptWatcher::Settled(UINT64 receipt, UINT confirmed, UINT adjusted) {
    host->receipts_.OnSettled(receipt, confirmed, adjusted);
    return host->InsideCallback();
}

STDMETHODIMP DeliveryHost::ReceiptWatcher::Lost(UINT64 receipt, UINT acknowledged, UINT refused, UINT unanswered,
                                                UINT unsent) {
    host->trace_.Require(host->HasEnded(), "a receipt is lost although the connection has not ended");
    host->receipts_.OnLost(receipt, acknowledged, refused, unanswered, unsent);
    return host->InsideCallback();
}

STDMETHODIMP DeliveryHost::ReportWatcher::BlockReported(_MorquilPropertySetId set, _MorquilReportKind kind,
                                                        _MorquilReportOrigin origin) {
    host->reports_.OnReported(number, set, kind, origin);
    return host->InsideCallback();
}

HRESULT DeliveryHost::InsideCallback() {
    int& callbacks = callbacks_[Scheduler::Instance().Current()];
    ++callbacks;
    Scheduler::Instance().GiveWay();
    for (int actions = 0; actions < 2 && dice_.OneIn(4) && HasDevice(); ++actions) {
        dice_.OneIn(16) ? ReleaseDevice() : Act();
    }
    Scheduler::Instance().GiveWay();
    --callbacks;
    return S_OK;
}

void DeliveryHost::Connect(CMorquilDevice* device) {
    device_ = device;
    const Call call(*this);
    _MorquilConnectToFailure reason{};
    const HRESULT result = device_->Connect(OwnedBstr(Utf16{OLESTR("device.test")}).Get(), nullptr, &reason);
    trace_.Note("connected");
    trace_.Require(result == S_OK, "cannot connect");
}

void DeliveryHost::Act() {
    switch (dice_.Below(16)) {
        case 0:
        case 1:
        case 2:
            return Open();
        case 3:
        case 4:
        case 5:
            return Mark();
        case 6:
            return Cancel();
        case 7:
            return ChangeReportObservers();
        case 8:
            return LoadAlignment();
        case 9:
            return dice_.OneIn(16) ? Disconnect() : Set();
        default:
            return Set();
    }
}

/// The device's own, without a reference.
IMorquilDelivery* DeliveryHost::Delivery() {
    void* out = nullptr;
    trace_.Require(device_->QueryInterface(IID_IMorquilDelivery, &out) == S_OK, "an interface is missing");
    device_->Release();
    return static_cast<IMorquilDelivery*>(out);
}

void DeliveryHost::Set() {
    const Call call(*this);
    const Setter& setter = dice_.OneOf(setters);
    const int value = values_.Next();
    trace_.Note(std::string("set ") + setter.header + " to " + std::to_string(value));
    receipts_.Queued(setter.header);
    trace_.Require(setter.set(*device_, value) == S_OK, "a value cannot be set");
}

void DeliveryHost::LoadAlignment() {
    const Call call(*this);
    static const Testing::TemporaryFolder folder;
    static const std::string path = folder.Make("alignment", "ALIGN:\nAlign trim X left: 1\n\n");
    trace_.Note("load an alignment");
    receipts_.Kept();
    trace_.Require(device_->LoadSettingsFile(OwnedBstr(BstrFromUtf8(path)).Get()) == S_FALSE, "wrong answer of a load");
}

void DeliveryHost::Open() {
    const Call call(*this);
    const bool isForAll = dice_.OneIn(2);
    UINT64 receipt = 0;
    const HRESULT result = Delivery()->OpenReceipt(
        &dice_.OneOf(receiptWatchers_), isForAll ? morquilReceiptAllThreads : morquilReceiptThisThread, &receipt);
    trace_.Note("open receipt " + std::to_string(receipt));
    trace_.Require(result == S_OK || (result == E_FAIL && HasEnded()), "a receipt cannot be opened");
    if (result == S_OK) {
        opened_.push_back(receipt);
        receipts_.Opened(receipt, isForAll ? 0 : Scheduler::Instance().Current());
    }
}

/// One that was opened, mostly a recent one; sometimes one that never was.
UINT64 DeliveryHost::AnyReceipt() {
    if (opened_.empty() || dice_.OneIn(32)) {
        return dice_.Below(2) * 1'000;
    }
    const auto count = static_cast<std::uint32_t>(opened_.size());
    return opened_[count - 1 - (dice_.OneIn(4) ? dice_.Below(count) : dice_.Below(count < 3 ? count : 3))];
}

void DeliveryHost::Mark() {
    const Call call(*this);
    const UINT64 receipt = AnyReceipt();
    trace_.Note("mark receipt " + std::to_string(receipt));
    const HRESULT expected = receipts_.Mark(receipt);
    trace_.Require(Delivery()->MarkReceipt(receipt) == expected, "wrong answer of a mark");
}

void DeliveryHost::Cancel() {
    const Call call(*this);
    const UINT64 receipt = AnyReceipt();
    trace_.Note("cancel receipt " + std::to_string(receipt));
    const HRESULT expected = receipts_.Cancel(receipt);
    trace_.Require(Delivery()->CancelReceipt(receipt) == expected, "wrong answer of a cancellation");
    trace_.Note("cancelled");
}

void DeliveryHost::ChangeReportObservers() {
    const Call call(*this);
    ReportWatcher& watcher = dice_.OneOf(reportWatchers_);
    const bool isAdding = !dice_.OneIn(3);
    trace_.Note((isAdding ? "add report observer " : "remove report observer ") + std::to_string(watcher.number));
    IMorquilDelivery* const delivery = Delivery();
    const HRESULT result = isAdding ? delivery->AddReportObserver(&watcher) : delivery->RemoveReportObserver(&watcher);
    const HRESULT expected = isAdding ? reports_.Add(watcher.number) : reports_.Remove(watcher.number);
    trace_.Require(result == expected, "wrong answer of a list of observers");
}

void DeliveryHost::Disconnect() {
    const Call call(*this);
    trace_.Note("disconnect");
    const bool wasEnding = std::exchange(hasEnded_, true);
    reports_.Silence();
    device_->Disconnect();
    trace_.Note("disconnect returns");
    trace_.Require(wasEnding || !receipts_.HasLive(), "a receipt outlives the disconnection");
}

bool DeliveryHost::OthersAreInCalls() const {
    for (const auto& [thread, calls] : calls_) {
        if (thread != Scheduler::Instance().Current() && calls > 0) {
            return true;
        }
    }
    return false;
}

/// The last reference is not released while another thread is using it.
void DeliveryHost::ReleaseDevice() {
    if (!HasDevice() || OthersAreInCalls()) {
        return;
    }
    const Call call(*this);
    trace_.Note("release");
    hasEnded_ = true;
    receipts_.Silence();
    reports_.Silence();
    trace_.Require(std::exchange(device_, nullptr)->Release() == 0, "the last count of references is wrong");
    trace_.Note("release returns");
}

void DeliveryHost::CheckObserversReleased() {
    for (const ReceiptWatcher& watcher : receiptWatchers_) {
        trace_.Require(watcher.References() == 0, "a receipt's observer is kept");
    }
    for (const ReportWatcher& watcher : reportWatchers_) {
        trace_.Require(watcher.References() == 0, "a report observer is kept");
    }
}

}  // namespace Morquil::Testing::Worlds
