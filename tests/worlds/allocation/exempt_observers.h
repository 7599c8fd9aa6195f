#pragma once

#include <initializer_list>
#include <string>

#include "platform/text.h"
#include "tests/unit/device/recording_observers.h"
#include "tests/worlds/allocation/scarce_memory.h"

namespace Morquil::Testing {

// Called on the library's threads; they need memory that does not count.
class ExemptConnectionObserver final : public RecordingObserver<IMorquilConnectionObserver> {
public:
    STDMETHODIMP Connected() override {
        const Exempt test;
        return Note("connected");
    }
    STDMETHODIMP Disconnected(_MorquilConnectToFailure /*reason*/) override {
        const Exempt test;
        return Note("disconnected");
    }
};

class ExemptReceiptObserver final : public RecordingObserver<IMorquilReceiptObserver> {
public:
    STDMETHODIMP Answered(UINT64 /*receipt*/, UINT acknowledged, UINT refused, UINT kept) override {
        return NoteNumbers("answered", {acknowledged, refused, kept});
    }
    STDMETHODIMP Settled(UINT64 /*receipt*/, UINT confirmed, UINT adjusted) override {
        return NoteNumbers("settled", {confirmed, adjusted});
    }
    STDMETHODIMP Lost(UINT64 /*receipt*/, UINT acknowledged, UINT refused, UINT unanswered, UINT unsent) override {
        return NoteNumbers("lost", {acknowledged, refused, unanswered, unsent});
    }

private:
    HRESULT NoteNumbers(const char* event, std::initializer_list<UINT> numbers) {
        const Exempt test;
        std::string text = event;
        for (const UINT number : numbers) {
            text += ' ' + std::to_string(number);
        }
        return Note(text);
    }
};

class ExemptReportObserver final : public RecordingObserver<IMorquilReportObserver> {
public:
    STDMETHODIMP BlockReported(_MorquilPropertySetId set, _MorquilReportKind /*kind*/,
                               _MorquilReportOrigin /*origin*/) override {
        const Exempt test;
        return Note(FourCharacters(set));
    }
};

class ExemptConsoleObserver final : public RecordingObserver<IMorquilConsoleObserver> {
public:
    STDMETHODIMP Line(BSTR text) override {
        const Exempt test;
        return Note(Utf8FromBstr(text));
    }
};

class ExemptPropertyObserver final : public RecordingObserver<IMorquilPropertyObserver> {
public:
    STDMETHODIMP PropertyChanged(_MorquilPropertySetId id) override {
        const Exempt test;
        return Note(FourCharacters(id));
    }
};

}  // namespace Morquil::Testing
