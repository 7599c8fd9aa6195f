#pragma once

#include <functional>
#include <initializer_list>
#include <memory>
#include <set>
#include <string>

#include "device/device.h"
#include "tests/kit/fake_comms.h"
#include "tests/kit/owned_bstr.h"
#include "tests/kit/temporary_folder.h"
#include "tests/worlds/allocation/exempt_observers.h"
#include "tests/worlds/allocation/scarce_memory.h"

namespace Morquil::Testing {

/// A host whose memory may run out, and its device. Each action checks that its result is a stated one: success, or a
/// failure that it names if memory has run out.
class ScarceHost {
public:
    ScarceHost();
    /// Releases the device and waits until none of its parts is in use.
    ~ScarceHost();
    ScarceHost(const ScarceHost&) = delete;
    ScarceHost& operator=(const ScarceHost&) = delete;

    void Create();
    void Connect();
    void ConnectAsync();
    /// The same without waiting for the end.
    void BeginConnect();
    /// Creates and connects; both observers are added.
    void CreateConnected();
    void Disconnect();
    void Release();

    void AddObservers();
    void RemoveObservers();
    /// The device reports something new.
    void Report();
    void SaveSettings();
    void LoadSettings();

    /// The library's text goes to an observer while the device reports something.
    void ListenToConsole();
    /// Report observers are notified of what the device reports.
    void FollowReports();
    /// The device answers nothing, a block is in flight, and a text waits.
    void LeaveTextWaiting();
    /// Queues what `setters` set while a receipt collects it, and marks that.
    void OpenReceipt();
    void QueueForReceipt(const std::function<HRESULT()>& setter);
    void MarkReceipt();
    void CancelReceipt();
    /// Waits for the receipt's end, which comes whatever has failed, and checks what it has counted.
    void AwaitReceipt();
    /// The device answers what it has received so far, if it was silent.
    void AnswerLate();

    /// Runs a setter and waits until `isDone` and the device's answers have been read, or the connection has ended.
    void Set(const std::function<HRESULT()>& setter, const std::function<bool()>& isDone);
    /// Runs a getter of a text.
    void GetText(const std::function<HRESULT(BSTR*)>& getter);

    /// The feature object that implements an interface, without a reference of its own.
    template <class Interface>
    Interface* Feature(const IID& iid) const {
        void* out = nullptr;
        if (device->QueryInterface(iid, &out) == S_OK) {
            device->Release();
        }
        return static_cast<Interface*>(out);
    }
    bool HasSent(const std::string& what) const { return link.Sent().find(what) != std::string::npos; }

    CMorquilDevice* device = nullptr;
    const OwnedBstr longText{Utf16{OLESTR("a name that is longer than what a small text holds")}};

private:
    IMorquilDelivery* Delivery() const;
    bool HasReceivedEveryAnswer() const;
    bool HasGone() const;
    void AwaitThat(const std::function<bool()>& isDone) const;

    const OwnedBstr address_{Utf16{OLESTR("a-device-whose-name-is-long.test")}};
    const TemporaryFolder folder_;
    const std::string file_ = folder_.PathOf("settings.txt");
    const OwnedBstr path_{Utf16(file_.begin(), file_.end())};
    Held<ExemptConnectionObserver> connectionObserver_;
    Held<ExemptPropertyObserver> propertyObserver_;
    Held<ExemptReceiptObserver> receiptObserver_;
    Held<ExemptReportObserver> reportObserver_;
    UINT64 receipt_ = 0;         // 0 if none could be opened
    unsigned queued_ = 0;        // for it
    bool isConnecting_ = false;  // or has connected; the observer is notified of the end

public:
    FakeConnection link;
};

/// A host gets success, or one of these failures if memory has run out.
void ExpectStated(HRESULT result, HRESULT success, const std::set<HRESULT>& failures);

}  // namespace Morquil::Testing
