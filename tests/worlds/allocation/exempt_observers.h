#pragma once

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

class ExemptPropertyObserver final : public RecordingObserver<IMorquilPropertyObserver> {
public:
    STDMETHODIMP PropertyChanged(_MorquilPropertySetId id) override {
        const Exempt test;
        return Note(FourCharacters(id));
    }
};

}  // namespace Morquil::Testing
