// A simulated device with any faults, and a host with every observer registered.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "simulator/conversation/conversation.h"
#include "tests/kit/temporary_folder.h"
#include "tests/system/host/host.h"
#include "tests/system/simulator_program/running_program.h"

namespace Morquil::Testing {

/// Polls for up to 10 s, for conditions that neither the library nor the device reports. Returns: whether it came true.
bool Eventually(const std::function<bool()>& condition);

/// What the getters of a device object return: all settings, some ranges of each kind, every conversion, the first
/// preset's name.
std::string MirrorOf(const RawObject& device);

/// The mirror of a new device without faults.
const std::string& HealthyMirror();

/// The mirror of a device object that is not connected.
const std::string& EmptyMirror();

/// The device's program, and a host that connects to it.
class FaultyDevice {
public:
    using Options = Simulator::Options;
    enum class Recording { No, Yes };

    /// Starts the device, and an attempt to connect to it.
    explicit FaultyDevice(Options options, Recording recording = Recording::No);
    ~FaultyDevice();
    FaultyDevice(const FaultyDevice&) = delete;
    FaultyDevice& operator=(const FaultyDevice&) = delete;

    const RawObject& Object() const { return object_; }
    std::string Address() const { return program_->Address(); }
    /// Waits until `count` calls of the connection observer have been made. Returns: whether they were.
    bool AwaitConnectionCalls(std::size_t count) { return connection_.AwaitCalls(count); }
    Strings ConnectionCalls() { return connection_.Notifications(); }

    /// Carries out a line of a script on the device.
    void Submit(const std::string& line) { program_->Submit(line); }
    /// Returns once the library has received everything that the device has sent: the property sets notified since the
    /// last call, in that order.
    std::string TakeNotifications();
    /// The same once the connection has ended.
    std::string TakeNotificationsUntilTheEnd();

    /// For a recorded device: everything that the host has sent, everything that the device has sent, and its longest
    /// piece.
    std::string HostSaid() const { return Said(Simulator::ConversationEvent::Kind::HostSays); }
    std::string DeviceSaid() const { return Said(Simulator::ConversationEvent::Kind::DeviceSays); }
    std::size_t LongestPiece() const;
    /// How often `text` occurs in the recording, from either side; for a recording that is too long to parse.
    std::size_t TimesRecorded(std::string_view text) const;

    /// A number that a feature knows, or `unknown`.
    static constexpr int unknown = -9999;
    int Number(const char* iid, int getter) const;
    void Set(const char* iid, int setter, int value) const;

    /// Waits for "connected", and compares the mirror with that of a device without faults.
    void ExpectConnected();
    /// A change at the device is notified once; a change by the host is echoed and not notified.
    void ExpectConversation();
    /// The host releases the device: within a second, and no observer is kept.
    void ExpectReleased();
    /// The host disconnects within a second and releases the device: with exactly these calls of the connection
    /// observer from first to last, and with no notification after them.
    void ExpectEnd(const Strings& connectionCalls);

private:
    void Note(const std::string& id);
    std::vector<Simulator::ConversationEvent> Recorded() const;
    std::string Said(Simulator::ConversationEvent::Kind who) const;

    TemporaryFolder folder_;
    std::string recording_;
    std::unique_ptr<RunningProgram> program_;
    int marks_ = 0;

    std::mutex lock_;
    std::condition_variable marked_;
    std::string awaitedMark_;
    bool markCame_ = false;
    std::string notified_;
    std::size_t notifiedCount_ = 0;
    std::size_t notifiedBeforeTheEnd_ = 0;

    PropertyObserver properties_;
    ConnectionObserver connection_;
    RawObject object_;
};

}  // namespace Morquil::Testing
