// A first host: connects to a device, reads some values, changes two settings, and is notified of a change made by
// someone else. Every step checks its result; the exit status is 0 only if all of them succeeded.
//
//     morquil-host [ADDRESS]
//
// The library itself writes its diagnostics, and everything that it receives, to standard output. This host's own lines
// start with "host: ", to distinguish them.

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
    // In one piece, and on a new line: the library may be in the middle of one.
    std::cout << "\nhost: " + text + "\n" << std::flush;
}

void Expect(bool isTrue, const std::string& expected) {
    if (!isTrue) {
        throw std::runtime_error("expected " + expected);
    }
}

/// Counts the notifications of each property set.
class Notifications {
public:
    /// Called on the library's thread.
    void Add(PropertySet set) {
        const std::lock_guard lock(mutex_);
        ++counts_[set];
        added_.notify_all();
    }
    int Count(PropertySet set) {
        const std::lock_guard lock(mutex_);
        return counts_[set];
    }
    /// Waits until `happened` returns true, and gives up after `limit`. Checks after every notification, and every few
    /// milliseconds: the device's answer to this host's own setters causes no notification.
    template <class Condition>
    bool WaitUntil(Condition happened, std::chrono::seconds limit) {
        const auto end = std::chrono::steady_clock::now() + limit;
        while (!happened() && std::chrono::steady_clock::now() < end) {
            std::unique_lock lock(mutex_);
            added_.wait_for(lock, std::chrono::milliseconds(5));
        }
        return happened();
    }

private:
    std::mutex mutex_;
    std::condition_variable added_;
    std::map<PropertySet, int> counts_;
};

std::string NameOf(VideoMode mode) {
    return std::string(ToText(mode));
}

void ReadValues(const morquil::Device& device) {
    // The library keeps a mirror of the device's state: getters answer from it at once.
    Say("connected to \"" + device.GetDeviceName() + "\"");
    Say("video input " + NameOf(device.InputConfiguration().GetVideoMode()) + ", video output " +
        NameOf(device.OutputConfiguration().GetVideoMode()) + ", gain " +
        std::to_string(device.VideoProcAmp().GetGain()));
}

void ChangeGain(const morquil::Device& device, Notifications& notifications) {
    const auto amp = device.VideoProcAmp();
    const int before = amp.GetGain();
    const int wanted = before == 10 ? 11 : 10;
    Say("setting the gain from " + std::to_string(before) + " to " + std::to_string(wanted) + "...");
    // A setter only sends. The mirror, and so the getter, changes when the device reports the new value.
    amp.SetGain(wanted);
    Expect(notifications.WaitUntil([&] { return amp.GetGain() == wanted; }, deviceAnswersWithin),
           "the new gain in the mirror");
    Say("the device reports gain " + std::to_string(amp.GetGain()));
}

void ChangeOutputMode(const morquil::Device& device, Notifications& notifications) {
    const auto output = device.OutputConfiguration();
    const VideoMode before = output.GetVideoMode();
    const VideoMode wanted = before == VideoMode::Mode1080p50 ? VideoMode::Mode720p50 : VideoMode::Mode1080p50;
    Say("setting the video output from " + NameOf(before) + " to " + NameOf(wanted) + "...");
    output.SetVideoMode(wanted);
    const auto notified = [&] { return notifications.Count(PropertySet::OutputConfiguration) > 0; };
    Expect(notifications.WaitUntil([&] { return output.GetVideoMode() == wanted && notified(); }, deviceAnswersWithin),
           "the new video mode, and a notification of it");
    Say("the device reports video output " + NameOf(wanted) + ", and the observer was notified");
}

/// Callbacks come one at a time, in the order of the device's reports. The gain was reported before the output mode,
/// and the notification of the output mode has arrived: one of the gain would have arrived before it.
void ExpectNoNotificationOfOwnGain(Notifications& notifications) {
    Expect(notifications.Count(PropertySet::VideoProcAmp) == 0, "no notification of this host's own gain");
    Say("the observer was not notified of the gain: this host set it itself");
}

void AwaitFrontPanel(const morquil::Device& device, Notifications& notifications) {
    const int before = device.VideoProcAmp().GetGain();
    Say("waiting for someone to turn the gain knob on the front panel...");
    Expect(notifications.WaitUntil([&] { return notifications.Count(PropertySet::VideoProcAmp) > 0; }, peopleActWithin),
           "a notification of a change on the front panel");
    const int gain = device.VideoProcAmp().GetGain();
    Expect(gain != before, "another gain");
    Say("the observer was notified: someone has set the gain to " + std::to_string(gain));
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

void Run(const std::string& address) {
    Say("connecting to " + address + "...");
    const morquil::Device device = morquil::Connect(address);
    ReadValues(device);
    Notifications notifications;
    const auto count = [&](PropertySet set) { notifications.Add(set); };
    {
        const morquil::Subscription output = device.OnChange(PropertySet::OutputConfiguration, count);
        const morquil::Subscription amp = device.OnChange(PropertySet::VideoProcAmp, count);
        ChangeGain(device, notifications);
        ChangeOutputMode(device, notifications);
        ExpectNoNotificationOfOwnGain(notifications);
        AwaitFrontPanel(device, notifications);
    }
    Disconnect(device);
}

}  // namespace

int main(int argumentCount, char** arguments) try {
    [[maybe_unused]] const morquil::Apartment apartment;
    Run(argumentCount > 1 ? arguments[1] : "127.0.0.1");
    return 0;
} catch (const std::exception& error) {
    Say(std::string("FAILED: ") + error.what());
    return 1;
}
