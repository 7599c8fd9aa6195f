// A first host: connects to a device, looks around, changes two settings, and is told of a change that somebody else
// makes. Every step says what it expects; the exit status is 0 only when all of it came true.
//
//     morquil-host [ADDRESS]
//
// The library itself writes its diagnostics, and all that it receives, to standard output. This host starts its own
// lines with "host: ", so that the two can be told apart.

#include <condition_variable>
#include <iostream>
#include <map>
#include <morquil.hpp>
#include <mutex>
#include <stdexcept>
#include <string>

namespace {

using morquil::PropertySet;
using morquil::VideoMode;

constexpr std::chrono::seconds deviceAnswersWithin{5};
constexpr std::chrono::seconds peopleActWithin{60};

void Say(const std::string& text) {
    // In one piece, and on a line of its own: the library may be in the middle of one.
    std::cout << "\nhost: " + text + "\n" << std::flush;
}

void Expect(bool isTrue, const std::string& expected) {
    if (!isTrue) {
        throw std::runtime_error("expected " + expected);
    }
}

/// What the observers were told.
class Ear {
public:
    /// Called on the library's thread.
    void Hear(PropertySet set) {
        const std::lock_guard lock(mutex_);
        ++timesTold_[set];
        told_.notify_all();
    }
    int TimesTold(PropertySet set) {
        const std::lock_guard lock(mutex_);
        return timesTold_[set];
    }
    /// Waits until `happened` answers yes, and gives up after `limit`. Looks whenever something is told, and now and
    /// then: of the device's answer to this host's own setters nothing is told.
    template <class Condition>
    bool WaitUntil(Condition happened, std::chrono::seconds limit) {
        const auto end = std::chrono::steady_clock::now() + limit;
        while (!happened() && std::chrono::steady_clock::now() < end) {
            std::unique_lock lock(mutex_);
            told_.wait_for(lock, std::chrono::milliseconds(5));
        }
        return happened();
    }

private:
    std::mutex mutex_;
    std::condition_variable told_;
    std::map<PropertySet, int> timesTold_;
};

std::string NameOf(VideoMode mode) {
    return std::string(ToText(mode));
}

void LookAround(const morquil::Device& device) {
    // The library keeps a mirror of the device's state: getters answer from it at once.
    Say("connected to \"" + device.GetDeviceName() + "\"");
    Say("video input " + NameOf(device.InputConfiguration().GetVideoMode()) + ", video output " +
        NameOf(device.OutputConfiguration().GetVideoMode()) + ", gain " +
        std::to_string(device.VideoProcAmp().GetGain()));
}

void ChangeGain(const morquil::Device& device, Ear& ear) {
    const auto amp = device.VideoProcAmp();
    const int before = amp.GetGain();
    const int wanted = before == 10 ? 11 : 10;
    Say("setting the gain from " + std::to_string(before) + " to " + std::to_string(wanted) + "...");
    // A setter only sends. The mirror, and so the getter, follows when the device reports the new value.
    amp.SetGain(wanted);
    Expect(ear.WaitUntil([&] { return amp.GetGain() == wanted; }, deviceAnswersWithin), "the new gain in the mirror");
    Say("the device has reported it: the gain is " + std::to_string(amp.GetGain()));
}

void ChangeOutputMode(const morquil::Device& device, Ear& ear) {
    const auto output = device.OutputConfiguration();
    const VideoMode before = output.GetVideoMode();
    const VideoMode wanted = before == VideoMode::Mode1080p50 ? VideoMode::Mode720p50 : VideoMode::Mode1080p50;
    Say("setting the video output from " + NameOf(before) + " to " + NameOf(wanted) + "...");
    output.SetVideoMode(wanted);
    const auto told = [&] { return ear.TimesTold(PropertySet::OutputConfiguration) > 0; };
    Expect(ear.WaitUntil([&] { return output.GetVideoMode() == wanted && told(); }, deviceAnswersWithin),
           "the new video mode, and to be told of it");
    Say("the device has reported it: the video output is " + NameOf(wanted) + ", and the observer was told");
}

/// Calls come one after the other, in the order of what the device reports. The output mode was reported last and has
/// been told: a call about the gain would have come before.
void WasNotToldOfItsOwnGain(Ear& ear) {
    Expect(ear.TimesTold(PropertySet::VideoProcAmp) == 0, "not to be told of this host's own gain");
    Say("the observer was not told of the gain, which this host set itself");
}

void IsToldOfTheFrontPanel(const morquil::Device& device, Ear& ear) {
    const int before = device.VideoProcAmp().GetGain();
    Say("waiting for somebody to turn the gain knob at the front panel...");
    Expect(ear.WaitUntil([&] { return ear.TimesTold(PropertySet::VideoProcAmp) > 0; }, peopleActWithin),
           "to be told of a change at the front panel");
    const int gain = device.VideoProcAmp().GetGain();
    Expect(gain != before, "another gain");
    Say("the observer was told: somebody has set the gain to " + std::to_string(gain));
}

void Disconnect(const morquil::Device& device) {
    device.Disconnect();
    // The mirror is empty now.
    try {
        device.GetSoftwareVersion();
    } catch (const morquil::NotKnown&) {
        Say("disconnected");
        return;
    }
    Expect(false, "an empty mirror after the disconnection");
}

void Visit(const std::string& address) {
    Say("connecting to " + address + "...");
    const morquil::Device device = morquil::Connect(address);
    LookAround(device);
    Ear ear;
    const auto hear = [&](PropertySet set) { ear.Hear(set); };
    {
        const morquil::Subscription output = device.OnChange(PropertySet::OutputConfiguration, hear);
        const morquil::Subscription amp = device.OnChange(PropertySet::VideoProcAmp, hear);
        ChangeGain(device, ear);
        ChangeOutputMode(device, ear);
        WasNotToldOfItsOwnGain(ear);
        IsToldOfTheFrontPanel(device, ear);
    }
    Disconnect(device);
}

}  // namespace

int main(int argumentCount, char** arguments) try {
    [[maybe_unused]] const morquil::Apartment apartment;
    Visit(argumentCount > 1 ? arguments[1] : "127.0.0.1");
    return 0;
} catch (const std::exception& error) {
    Say(std::string("FAILED: ") + error.what());
    return 1;
}
