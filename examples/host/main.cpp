// A first host: connects to a device, reads some values, changes some settings, and is notified of a change made by
// someone else. Every step checks its result; the exit status is 0 only if all of them succeeded.
//
//     morquil-host [ADDRESS]

#include <chrono>
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
    std::cout << text << std::endl;
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
    /// Waits for a notification of this set, and gives up after `limit`.
    bool Await(PropertySet set, std::chrono::seconds limit) {
        std::unique_lock lock(mutex_);
        return added_.wait_for(lock, limit, [&] { return counts_[set] > 0; });
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

void ChangeGain(const morquil::Device& device) {
    const auto amp = device.VideoProcAmp();
    const int before = amp.GetGain();
    const int wanted = before == 10 ? 11 : 10;
    Say("setting the gain from " + std::to_string(before) + " to " + std::to_string(wanted) + "...");
    // A setter only queues. Apply waits until the device has confirmed what was set in it, or has refused it.
    const morquil::Outcome outcome = device.Apply([&] { amp.SetGain(wanted); }, deviceAnswersWithin);
    Expect(outcome.IsApplied(), "the new gain, but it was " + ToText(outcome));
    Say(ToText(outcome) + ": the device reports gain " + std::to_string(amp.GetGain()));
}

void ExceedTheGain(const morquil::Device& device) {
    const auto amp = device.VideoProcAmp();
    const int before = amp.GetGain();
    const int wanted = amp.GetGainRange().max + 1;
    Say("setting the gain to " + std::to_string(wanted) + ", which is too much...");
    const morquil::Outcome outcome = device.Apply([&] { amp.SetGain(wanted); }, deviceAnswersWithin);
    Expect(outcome == morquil::Result::Refused && amp.GetGain() == before, "a refusal");
    Say(ToText(outcome));
}

void ChangeOutputMode(const morquil::Device& device, Notifications& notifications) {
    const auto output = device.OutputConfiguration();
    const VideoMode before = output.GetVideoMode();
    const VideoMode wanted = before == VideoMode::Mode1080p50 ? VideoMode::Mode720p50 : VideoMode::Mode1080p50;
    Say("setting the video output from " + NameOf(before) + " to " + NameOf(wanted) + "...");
    const morquil::Outcome outcome = device.Apply([&] { output.SetVideoMode(wanted); }, deviceAnswersWithin);
    Expect(outcome.IsApplied(), "the new video mode, but it was " + ToText(outcome));
    Expect(notifications.Await(PropertySet::OutputConfiguration, deviceAnswersWithin), "a notification of it");
    Say("the device reports video output " + NameOf(output.GetVideoMode()) + ", and the observer was notified");
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
    Expect(notifications.Await(PropertySet::VideoProcAmp, peopleActWithin),
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
        ChangeGain(device);
        ExceedTheGain(device);
        ChangeOutputMode(device, notifications);
        ExpectNoNotificationOfOwnGain(notifications);
        AwaitFrontPanel(device, notifications);
    }
    Disconnect(device);
}

}  // namespace

int main(int argumentCount, char** arguments) try {
    [[maybe_unused]] const morquil::Apartment apartment;
    morquil::SilenceLibrary();  // standard output is for this host's own lines
    Run(argumentCount > 1 ? arguments[1] : "127.0.0.1");
    return 0;
} catch (const std::exception& error) {
    Say(std::string("FAILED: ") + error.what());
    return 1;
}
