// A first host: connects to a device, looks around, changes two settings, and is told of a change that somebody else
// makes. Every step says what it expects; the exit status is 0 only when all of it came true.
//
//     morquil-raw-host [ADDRESS]
//
// The library itself writes its diagnostics, and all that it receives, to standard output. This host starts its own
// lines with "host: ", so that the two can be told apart.

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
    // In one call, and on a line of its own: the library may be in the middle of one.
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

/// One connected device and what this host uses of it.
class Visit {
public:
    explicit Visit(IMorquilDevice* device)
        : device_(device),
          input_(FeatureOf<IMorquilInputConfiguration>(device, IID_IMorquilInputConfiguration)),
          output_(FeatureOf<IMorquilOutputConfiguration>(device, IID_IMorquilOutputConfiguration)),
          procAmp_(FeatureOf<IMorquilVideoProcAmp>(device, IID_IMorquilVideoProcAmp)) {}

    bool LookAround() {
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
                return Fail("to be registered as an observer", "the result " + InHexadecimal(result));
            }
        }
        return true;
    }

    bool ChangeGain() {
        const int before = Gain();
        const int wanted = before == 10 ? 11 : 10;
        Say("setting the gain from %d to %d...", before, wanted);
        // A setter only sends. The mirror, and so the getter, follows when the device reports the new value.
        const HRESULT result = procAmp_->SetGain(wanted);
        if (FAILED(result)) {
            return Fail("the gain to be sent", "the result " + InHexadecimal(result));
        }
        if (!watcher_->WaitUntil([&] { return Gain() == wanted; }, deviceAnswersWithin)) {
            return Fail("the new gain in the mirror", std::to_string(Gain()));
        }
        Say("the device has reported it: the gain is %d", Gain());
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
        const auto told = [&] { return watcher_->TimesTold(morquilOutputConfigurationPropertySetId) > 0; };
        if (!watcher_->WaitUntil([&] { return OutputMode() == wanted && told(); }, deviceAnswersWithin)) {
            return Fail("the new video mode, and to be told of it",
                        std::string(NameOf(OutputMode())) + (told() ? ", told" : ", not told"));
        }
        Say("the device has reported it: the video output is %s, and the observer was told", NameOf(OutputMode()));
        return true;
    }

    /// Calls come one after the other, in the order of what the device reports. The output mode was reported last and
    /// has been told: a call about the gain would have come before.
    bool WasNotToldOfItsOwnGain() {
        const int times = watcher_->TimesTold(morquilVideoProcAmpPropertySetId);
        if (times != 0) {
            return Fail("not to be told of this host's own gain", std::to_string(times) + " call(s)");
        }
        Say("the observer was not told of the gain, which this host set itself");
        return true;
    }

    bool IsToldOfTheFrontPanel() {
        const int before = Gain();
        Say("waiting for somebody to turn the gain knob at the front panel...");
        const auto told = [&] { return watcher_->TimesTold(morquilVideoProcAmpPropertySetId) > 0; };
        if (!watcher_->WaitUntil(told, peopleActWithin)) {
            return Fail("to be told of a change at the front panel", "no call");
        }
        if (Gain() == before) {
            return Fail("another gain", "still " + std::to_string(before));
        }
        Say("the observer was told: somebody has set the gain to %d", Gain());
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

bool VisitDevice(IMorquilDevice* device) {
    Visit visit(device);
    const bool allTrue = visit.LookAround() && visit.StartWatching() && visit.ChangeGain() &&
                         visit.ChangeOutputMode() && visit.WasNotToldOfItsOwnGain() && visit.IsToldOfTheFrontPanel();
    visit.StopWatching();
    return allTrue;
}

bool Disconnect(IMorquilDiscovery* discovery, IMorquilDevice* device) {
    discovery->Disconnect(device);
    // The mirror is empty now: what is no longer known is E_FAIL.
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
    const bool visited = VisitDevice(device.Get());
    return Disconnect(discovery.Get(), device.Get()) && visited;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    const ComRuntime runtime;
    return Run(argumentCount > 1 ? arguments[1] : "127.0.0.1") ? 0 : 1;
}
