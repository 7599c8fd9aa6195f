// The program under test: it watches a device, and sends a message whenever something is wrong with its input.
#pragma once

#include <atomic>
#include <functional>
#include <morquil.hpp>
#include <string>
#include <utility>

class InputMonitor {
public:
    /// Called with each message, on one of the library's threads.
    using Messenger = std::function<void(std::string)>;

    InputMonitor(const std::string& address, Messenger send)
        : send_(std::move(send)), session_(address, Handlers(), morquil::SessionOptions()) {}

private:
    morquil::SessionHandlers Handlers() {
        morquil::SessionHandlers handlers;
        handlers.connected = [this](const morquil::Device& device) { Watch(device); };
        handlers.lost = [this](morquil::ConnectFailure) { send_("the device is lost"); };
        handlers.attemptFailed = [this](auto&&...) { send_("the device is lost"); };
        return handlers;
    }

    void Watch(const morquil::Device& device) {
        send_("watching " + device.GetDeviceName());
        hadSignal_ = true;
        // Subscribe first, then look: a change in between is not missed.
        input_ = device.OnChange(morquil::PropertySet::InputConfiguration,
                                 [this, device](morquil::PropertySet) { Look(device); });
        Look(device);
    }

    void Look(const morquil::Device& device) try {
        const bool hasSignal = device.InputConfiguration().GetSignalPresent();
        if (hadSignal_.exchange(hasSignal) != hasSignal) {
            send_(hasSignal ? "the signal is back" : "no signal");
        }
    } catch (const morquil::NotKnown&) {
        // The device is lost, so nothing is known of it; the session reports that.
    }

    // First: Windows unloads the library when the last apartment ends, and the members below need it until then.
    [[maybe_unused]] const morquil::Apartment apartment_{};
    const Messenger send_;
    std::atomic<bool> hadSignal_{true};
    morquil::Subscription input_;
    morquil::Session session_;  // last: its handlers use everything above
};
