// A first host: connects to a device, reads some values, changes some settings, and is notified of a change made by
// someone else. Every step checks its result; the exit status is 0 only if all of them succeeded.
//
//     morquil-raw-host [ADDRESS]

#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <string>

#include "MorquilWords.h"
#include "discovery.h"
#include "owned.h"
#include "property_watcher.h"
#include "receipt_watcher.h"
#include "text.h"

#ifdef __GNUC__
#define PRINTF_LIKE __attribute__((format(printf, 1, 2)))
#else
#define PRINTF_LIKE
#endif

namespace {

constexpr std::chrono::seconds deviceAnswersWithin{5};
constexpr std::chrono::seconds peopleActWithin{60};

PRINTF_LIKE void Say(const char* format, ...) {
    char text[256];
    std::va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    std::printf("%s\n", text);
    std::fflush(stdout);
}

// A value from another version of the library may have no word here.
const char* NameOf(_MorquilAPIVideoMode mode) {
    const char* const word = MorquilVideoModeText(mode);
    return word != nullptr ? word : "another mode";
}

bool Fail(const char* expected, const std::string& got) {
    Say("FAILED: expected %s, got %s", expected, got.c_str());
    return false;
}

std::string InHexadecimal(HRESULT result) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08x", static_cast<unsigned>(result));
    return text;
}

const char* InWords(_MorquilConnectToFailure reason) {
    switch (reason) {
        case morquilConnectToFailureIncompatibleFirmware:
        case morquilConnectToFailureIncompatibleUpdateSupported:
            return "the device's firmware speaks another version of the protocol";
        case morquilConnectToFailureRemoteLock:
            return "the device is locked against remote control";
        default:
            return "no answer from a device";
    }
}

/// One connected device, and the features that this host uses.
class ConnectedDevice {
public:
    explicit ConnectedDevice(IMorquilDevice* device)
        : device_(device),
          input_(FeatureOf<IMorquilInputConfiguration>(device, IID_IMorquilInputConfiguration)),
          output_(FeatureOf<IMorquilOutputConfiguration>(device, IID_IMorquilOutputConfiguration)),
          procAmp_(FeatureOf<IMorquilVideoProcAmp>(device, IID_IMorquilVideoProcAmp)),
          delivery_(FeatureOf<IMorquilDelivery>(device, IID_IMorquilDelivery)) {}

    bool ReadValues() {
        if (!input_ || !output_ || !procAmp_ || !delivery_) {
            return Fail("the interfaces of the device's features", "not all of them");
        }
        Text name;
        unsigned softwareVersion = 0;
        unsigned fpgaVersion = 0;
        _MorquilAPIVideoMode inputMode{};
        _MorquilAPIVideoMode outputMode{};
        // The library keeps a mirror of the device's state: getters answer from it at once.
        for (const HRESULT result :
             {device_->GetDeviceName(name.Receive()), device_->GetSoftwareVersion(&softwareVersion),
              device_->GetFPGAVersion(&fpgaVersion), input_->GetVideoMode(&inputMode),
              output_->GetVideoMode(&outputMode)}) {
            if (FAILED(result)) {
                return Fail("the state of the device", "the result " + InHexadecimal(result));
            }
        }
        Say("connected to \"%s\", software version 0x%x, FPGA version 0x%x", name.ToAscii().c_str(), softwareVersion,
            fpgaVersion);
        Say("video input %s, video output %s, gain %d", NameOf(inputMode), NameOf(outputMode), Gain());
        return true;
    }

    bool StartWatching() {
        for (const _MorquilPropertySetId id :
             {morquilOutputConfigurationPropertySetId, morquilVideoProcAmpPropertySetId}) {
            const HRESULT result = device_->AddPropertyObserver(watcher_.Get(), id);
            if (result != S_OK) {
                return Fail("the observer to be registered", "the result " + InHexadecimal(result));
            }
        }
        return true;
    }

    bool ChangeGain() {
        const int before = Gain();
        const int wanted = before == 10 ? 11 : 10;
        Say("setting the gain from %d to %d...", before, wanted);
        const std::string outcome = OutcomeOf([&] { return procAmp_->SetGain(wanted); });
        if (outcome != "applied") {
            return Fail("the new gain in the mirror", outcome);
        }
        Say("%s: the device reports gain %d", outcome.c_str(), Gain());
        return true;
    }

    bool ExceedTheGain() {
        const int before = Gain();
        int min = 0;
        int max = 0;
        procAmp_->GetGainRange(&min, &max);
        Say("setting the gain to %d, which is too much...", max + 1);
        const std::string outcome = OutcomeOf([&] { return procAmp_->SetGain(max + 1); });
        if (outcome != "refused" || Gain() != before) {
            return Fail("a refusal", outcome);
        }
        Say("%s: the device reports gain %d", outcome.c_str(), Gain());
        return true;
    }

    bool ChangeOutputMode() {
        const _MorquilAPIVideoMode before = OutputMode();
        const _MorquilAPIVideoMode wanted =
            before == morquilAPIVideoMode1080p50 ? morquilAPIVideoMode720p50 : morquilAPIVideoMode1080p50;
        Say("setting the video output from %s to %s...", NameOf(before), NameOf(wanted));
        const std::string outcome = OutcomeOf([&] { return output_->SetVideoMode(wanted); });
        if (outcome != "applied") {
            return Fail("the new video mode", outcome);
        }
        if (!watcher_->Await(morquilOutputConfigurationPropertySetId, deviceAnswersWithin)) {
            return Fail("a notification of the new video mode", "none");
        }
        Say("the device reports video output %s, and the observer was notified", NameOf(OutputMode()));
        return true;
    }

    /// Callbacks come one at a time, in the order of the device's reports. The gain was reported before the output
    /// mode, and the notification of the output mode has arrived: one of the gain would have arrived before it.
    bool ExpectNoNotificationOfOwnGain() {
        const int notifications = watcher_->Notifications(morquilVideoProcAmpPropertySetId);
        if (notifications != 0) {
            return Fail("no notification of this host's own gain", std::to_string(notifications));
        }
        Say("the observer was not notified of the gain: this host set it itself");
        return true;
    }

    bool AwaitFrontPanel() {
        const int before = Gain();
        Say("waiting for someone to turn the gain knob on the front panel...");
        if (!watcher_->Await(morquilVideoProcAmpPropertySetId, peopleActWithin)) {
            return Fail("a notification of a change on the front panel", "none");
        }
        if (Gain() == before) {
            return Fail("another gain", "still " + std::to_string(before));
        }
        Say("the observer was notified: someone has set the gain to %d", Gain());
        return true;
    }

    void StopWatching() {
        device_->RemovePropertyObserver(watcher_.Get(), morquilOutputConfigurationPropertySetId);
        device_->RemovePropertyObserver(watcher_.Get(), morquilVideoProcAmpPropertySetId);
    }

private:
    /// What became of the change that `set` queues. A setter only queues; the receipt says when the device has
    /// confirmed the change, or has refused it.
    template <class Setter>
    std::string OutcomeOf(Setter set) {
        const Owned<ReceiptWatcher> watcher(new ReceiptWatcher);
        UINT64 receipt = 0;
        HRESULT result = delivery_->OpenReceipt(watcher.Get(), morquilReceiptThisThread, &receipt);
        if (SUCCEEDED(result)) {
            result = set();
        }
        if (SUCCEEDED(result)) {
            result = delivery_->MarkReceipt(receipt);
        }
        const std::string outcome =
            SUCCEEDED(result) ? watcher->Await(deviceAnswersWithin) : "the result " + InHexadecimal(result);
        // Unless everything has been reported, the library still has the watcher.
        delivery_->CancelReceipt(receipt);
        return outcome;
    }

    int Gain() {
        int gain = 0;
        procAmp_->GetGain(&gain);
        return gain;
    }

    _MorquilAPIVideoMode OutputMode() {
        _MorquilAPIVideoMode mode{};
        output_->GetVideoMode(&mode);
        return mode;
    }

    IMorquilDevice* device_;
    Owned<IMorquilInputConfiguration> input_;
    Owned<IMorquilOutputConfiguration> output_;
    Owned<IMorquilVideoProcAmp> procAmp_;
    Owned<IMorquilDelivery> delivery_;
    Owned<PropertyWatcher> watcher_{new PropertyWatcher};
};

bool UseDevice(IMorquilDevice* connected) {
    ConnectedDevice device(connected);
    const bool succeeded = device.ReadValues() && device.StartWatching() && device.ChangeGain() &&
                           device.ExceedTheGain() && device.ChangeOutputMode() &&
                           device.ExpectNoNotificationOfOwnGain() && device.AwaitFrontPanel();
    device.StopWatching();
    return succeeded;
}

bool Disconnect(IMorquilDiscovery* discovery, IMorquilDevice* device) {
    discovery->Disconnect(device);
    // The mirror is empty now: a value that is no longer known is E_FAIL.
    unsigned version = 0;
    const HRESULT result = device->GetSoftwareVersion(&version);
    if (result != E_FAIL) {
        return Fail("an empty mirror after the disconnection", "the result " + InHexadecimal(result));
    }
    Say("disconnected");
    return true;
}

/// The library prints its messages, and everything that devices send. From here on the output is this host's own.
void SilenceLibrary(IMorquilDiscovery* discovery) {
    void* console = nullptr;
    if (SUCCEEDED(discovery->QueryInterface(IID_IMorquilConsole, &console))) {
        Owned<IMorquilConsole>(static_cast<IMorquilConsole*>(console))->SetOutput(morquilConsoleSilent, nullptr);
    }
}

bool Run(const std::string& address) {
    const Owned<IMorquilDiscovery> discovery = GetDiscovery();
    if (!discovery) {
        return Fail("the discovery object", "nothing: is the library registered?");
    }
    SilenceLibrary(discovery.Get());
    Say("connecting to %s...", address.c_str());
    const Text addressText(address);
    IMorquilDevice* connected = nullptr;
    _MorquilConnectToFailure reason = morquilConnectToFailureNoFailure;
    if (FAILED(discovery->Connect(addressText.Get(), &connected, &reason))) {
        return Fail("a connected device", InWords(reason));
    }
    const Owned<IMorquilDevice> device(connected);
    const bool succeeded = UseDevice(device.Get());
    return Disconnect(discovery.Get(), device.Get()) && succeeded;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    const ComRuntime runtime;
    return Run(argumentCount > 1 ? arguments[1] : "127.0.0.1") ? 0 : 1;
}
