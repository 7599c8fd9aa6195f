// A first host: connects to a device, reads some values, changes two settings, and is notified of a change made by
// someone else. Every step checks its result; the exit status is 0 only if all of them succeeded.
//
//     morquil-raw-host [ADDRESS]
//
// The library itself writes its diagnostics, and everything that it receives, to standard output. This host's own lines
// start with "host: ", to distinguish them.

#include <chrono>
#include <cstdarg>
#include <cstdio>
#include <string>

#include "discovery.h"
#include "owned.h"
#include "property_watcher.h"
#include "text.h"
#include "video_mode_names.h"

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
    // In one call, and on a new line: the library may be in the middle of one.
    std::printf("\nhost: %s\n", text);
    std::fflush(stdout);
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
          procAmp_(FeatureOf<IMorquilVideoProcAmp>(device, IID_IMorquilVideoProcAmp)) {}

    bool ReadValues() {
        if (!input_ || !output_ || !procAmp_) {
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
        // A setter only sends. The mirror, and so the getter, changes when the device reports the new value.
        const HRESULT result = procAmp_->SetGain(wanted);
        if (FAILED(result)) {
            return Fail("the gain to be sent", "the result " + InHexadecimal(result));
        }
        if (!watcher_->WaitUntil([&] { return Gain() == wanted; }, deviceAnswersWithin)) {
            return Fail("the new gain in the mirror", std::to_string(Gain()));
        }
        Say("the device reports gain %d", Gain());
        return true;
    }

    bool ChangeOutputMode() {
        const _MorquilAPIVideoMode before = OutputMode();
        const _MorquilAPIVideoMode wanted =
            before == morquilAPIVideoMode1080p50 ? morquilAPIVideoMode720p50 : morquilAPIVideoMode1080p50;
        Say("setting the video output from %s to %s...", NameOf(before), NameOf(wanted));
        const HRESULT result = output_->SetVideoMode(wanted);
        if (FAILED(result)) {
            return Fail("the video mode to be sent", "the result " + InHexadecimal(result));
        }
        const auto notified = [&] { return watcher_->Notifications(morquilOutputConfigurationPropertySetId) > 0; };
        if (!watcher_->WaitUntil([&] { return OutputMode() == wanted && notified(); }, deviceAnswersWithin)) {
            return Fail("the new video mode, and a notification of it",
                        std::string(NameOf(OutputMode())) + (notified() ? ", notified" : ", not notified"));
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
        const auto notified = [&] { return watcher_->Notifications(morquilVideoProcAmpPropertySetId) > 0; };
        if (!watcher_->WaitUntil(notified, peopleActWithin)) {
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
    Owned<PropertyWatcher> watcher_{new PropertyWatcher};
};

bool UseDevice(IMorquilDevice* connected) {
    ConnectedDevice device(connected);
    const bool succeeded = device.ReadValues() && device.StartWatching() && device.ChangeGain() &&
                           device.ChangeOutputMode() && device.ExpectNoNotificationOfOwnGain() &&
                           device.AwaitFrontPanel();
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

bool Run(const std::string& address) {
    const Owned<IMorquilDiscovery> discovery = GetDiscovery();
    if (!discovery) {
        return Fail("the discovery object", "nothing: is the library registered?");
    }
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
