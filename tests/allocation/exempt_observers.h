#pragma once

#include "tests/allocation/scarce_memory.h"
#include "tests/device/recording_observers.h"

namespace Morquil::Test {

// Called on the library's threads; they need memory that does not count.
class ExemptConnectionObserver final : public Testing::RecordingObserver<IMorquilConnectionObserver> {
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

class ExemptPropertyObserver final : public Testing::RecordingObserver<IMorquilPropertyObserver> {
public:
    STDMETHODIMP PropertyChanged(_MorquilPropertySetId id) override {
        const Exempt test;
        return Note(Testing::FourCharacters(id));
    }
};

}  // namespace Morquil::Test
