#pragma once

#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "command/changes/watched_device.h"
#include "command/commands/kept_connection.h"
#include "command/top/view.h"
#include "diagnosis/diagnosis.h"

namespace Morquil::Command {

/// Keeps one device of a live view connected, and knows its state.
class Monitor {
public:
    /// A device that has been silent for `longestSilence` is disconnected, and connected again.
    Monitor(std::string address, const Selection& selection, std::chrono::milliseconds longestSilence);

    /// Adds what has happened since the last call.
    void Update(std::vector<Happening>& happenings);
    /// As of the last update.
    const DeviceView& Now() const { return view_; }

private:
    /// Shared with an inquiry, which may outlive the monitor.
    struct Answer {
        std::mutex mutex;
        std::optional<Diagnosis::Finding> finding;
    };

    Happening AsHappening(const ValueChange& change) const;
    std::optional<Happening> Handle(const Event& event);
    Happening Connected(const Event& event);
    Happening Lost(const Event& event);
    std::optional<Happening> Failed(const Event& event);
    std::optional<Happening> TakeFinding();
    std::optional<Happening> NotConnected(const std::string& cause, WallClock::time_point time);
    Happening LinkHappening(const char* event, const std::string& text, WallClock::time_point time) const;
    void ReadState();

    const std::chrono::milliseconds longestSilence_;
    DeviceView view_;
    bool wasSilent_ = false;
    const std::shared_ptr<Answer> answer_ = std::make_shared<Answer>();
    std::unique_ptr<Diagnosis::Inquiry> inquiry_;
    WatchedDevice watched_;
    const KeptConnection connection_;
};

}  // namespace Morquil::Command
