// Observers for tests: each records its notifications, counts its references and does what the test wants inside the
// call.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

#include "MorquilAPI.h"
#include "MorquilDelivery.h"
#include "core/thread.h"
#include "tests/kit/monitor.h"

namespace Morquil::Testing {

/// The four characters of a property set's or a failure reason's number.
template <class Code>
std::string FourCharacters(Code code) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        text += static_cast<char>((static_cast<std::uint32_t>(code) >> shift) & 0xFF);
    }
    return text;
}

/// The common part of both kinds. Lives on the heap and destroys itself; the test holds the first reference.
template <class Interface>
class RecordingObserver : public Interface {
public:
    RecordingObserver() = default;
    RecordingObserver(const RecordingObserver&) = delete;
    RecordingObserver& operator=(const RecordingObserver&) = delete;

    STDMETHODIMP QueryInterface(REFIID, void** out) override {
        *out = nullptr;
        return E_NOINTERFACE;
    }
    STDMETHODIMP_(ULONG) AddRef() override {
        const auto lock = Monitor::Enter();
        ++referencesTaken_;
        return ++references_;
    }
    STDMETHODIMP_(ULONG) Release() override {
        ULONG remaining = 0;
        {
            const auto lock = Monitor::Enter();
            remaining = --references_;
            Monitor::Changed();
        }
        if (remaining == 0) {
            delete this;
        }
        return remaining;
    }

    /// Runs inside the call, after it has been recorded. To be set before the observer is added.
    std::function<void()> onCall;
    /// If set, it names the observer in a list that several share.
    std::vector<std::string>* sharedNotes = nullptr;
    std::string name;

    std::vector<std::string> Notifications() const {
        const auto lock = Monitor::Enter();
        return notifications_;
    }
    /// The notifications since the last call of this.
    std::vector<std::string> TakeNotifications() {
        const auto lock = Monitor::Enter();
        return std::exchange(notifications_, {});
    }
    bool AwaitNotified(std::size_t count) const {
        return Monitor::Await([&] { return notifications_.size() >= count; });
    }
    bool AwaitNotified(const std::string& text) const {
        return Monitor::Await([&] {
            for (const std::string& notification : notifications_) {
                if (notification == text) {
                    return true;
                }
            }
            return false;
        });
    }
    ULONG References() const {
        const auto lock = Monitor::Enter();
        return references_;
    }
    /// How often one was added, released or not.
    ULONG ReferencesTaken() const {
        const auto lock = Monitor::Enter();
        return referencesTaken_;
    }
    bool AwaitReferences(ULONG count) const {
        return Monitor::Await([&] { return references_ == count; });
    }
    QRN::Core::ThreadId LastThread() const { return lastThread_; }

protected:
    virtual ~RecordingObserver() = default;

    HRESULT Note(const std::string& text) {
        {
            const auto lock = Monitor::Enter();
            notifications_.push_back(text);
            if (sharedNotes != nullptr) {
                sharedNotes->push_back(name + " " + text);
            }
            lastThread_ = QRN::Core::CurrentThreadId();
            Monitor::Changed();
        }
        if (onCall) {
            onCall();
        }
        return S_OK;
    }

private:
    ULONG references_ = 1;
    ULONG referencesTaken_ = 0;
    std::vector<std::string> notifications_;
    std::atomic<QRN::Core::ThreadId> lastThread_ = 0;
};

class ConnectionObserver final : public RecordingObserver<IMorquilConnectionObserver> {
public:
    STDMETHODIMP Connected() override { return Note("connected"); }
    STDMETHODIMP Disconnected(_MorquilConnectToFailure reason) override {
        return Note("disconnected " + FourCharacters(reason));
    }
};

class PropertyObserver final : public RecordingObserver<IMorquilPropertyObserver> {
public:
    STDMETHODIMP PropertyChanged(_MorquilPropertySetId id) override { return Note(FourCharacters(id)); }
};

class ReportObserver final : public RecordingObserver<IMorquilReportObserver> {
public:
    STDMETHODIMP BlockReported(_MorquilPropertySetId set, _MorquilReportKind kind,
                               _MorquilReportOrigin origin) override {
        return Note(FourCharacters(set) + (kind == morquilReportSettings ? " settings" : " availability") +
                    (origin == morquilReportEcho ? ", echo" : ""));
    }
};

/// Notes a receipt as "1: ..."; its numbers in the order of the call.
class ReceiptObserver final : public RecordingObserver<IMorquilReceiptObserver> {
public:
    STDMETHODIMP Answered(UINT64 receipt, UINT acknowledged, UINT refused, UINT kept) override {
        return NoteReceipt(receipt, "answered", {acknowledged, refused, kept});
    }
    STDMETHODIMP Settled(UINT64 receipt, UINT confirmed, UINT adjusted) override {
        return NoteReceipt(receipt, "settled", {confirmed, adjusted});
    }
    STDMETHODIMP Lost(UINT64 receipt, UINT acknowledged, UINT refused, UINT unanswered, UINT unsent) override {
        return NoteReceipt(receipt, "lost", {acknowledged, refused, unanswered, unsent});
    }

private:
    HRESULT NoteReceipt(UINT64 receipt, const char* event, std::initializer_list<UINT> numbers) {
        std::string text = std::to_string(receipt) + ": " + event;
        for (const UINT number : numbers) {
            text += ' ' + std::to_string(number);
        }
        return Note(text);
    }
};

/// Holds the test's reference to an observer.
template <class Observer>
class Held {
public:
    Held() : observer_(new Observer) {}
    ~Held() { observer_->Release(); }
    Held(const Held&) = delete;
    Held& operator=(const Held&) = delete;

    Observer* operator->() const { return observer_; }
    Observer* Get() const { return observer_; }

private:
    Observer* observer_;
};

}  // namespace Morquil::Testing
