// A simulated device with whatever is wrong with it, and a host that has every observer registered.
#pragma once

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "simulator/conversation.h"
#include "tests/host/host.h"
#include "tests/sim_program/running_program.h"
#include "tests/support/temporary_folder.h"

namespace Morquil::Test {

/// Asks again and again, for up to 10 s: for what the library and the device tell nobody. Returns: whether it came
/// true.
bool Eventually(const std::function<bool()>& condition);

/// What getters of a device object know: all settings, some ranges of each kind, every conversion, the first preset's
/// name.
std::string MirrorOf(const RawObject& device);

/// The mirror of a device that leaves the factory and has nothing wrong with it.
const std::string& HealthyMirror();

/// The mirror of a device object that is not connected.
const std::string& EmptyMirror();

/// The program of the device, and a host on its way to it.
class FaultyDevice {
public:
    using Options = Simulator::Options;
    enum class Recording { No, Yes };

    /// Starts the device, and to connect to it.
    explicit FaultyDevice(Options options, Recording recording = Recording::No);
    ~FaultyDevice();
    FaultyDevice(const FaultyDevice&) = delete;
    FaultyDevice& operator=(const FaultyDevice&) = delete;

    const RawObject& Object() const { return object_; }
    std::string Address() const { return program_->Address(); }
    /// Waits until `count` calls of the connection observer have been made. Returns: whether they were.
    bool AwaitConnectionCalls(std::size_t count) { return connection_.AwaitCalls(count); }
    Strings ConnectionCalls() { return connection_.Told(); }

    /// Carries out a line of a script at the device.
    void Obey(const std::string& line) { program_->Obey(line); }
    /// Returns after the library has heard all that the device has said until now: the property sets that were told
    /// since the last call, in that order.
    std::string Heard();
    /// The same once the connection has ended.
    std::string HeardUntilTheEnd();

    /// For a device that records: all that the host has sent, all that the device has sent, and the longest piece of
    /// it.
    std::string HostSaid() const { return Said(Simulator::ConversationEvent::Kind::HostSays); }
    std::string DeviceSaid() const { return Said(Simulator::ConversationEvent::Kind::DeviceSays); }
    std::size_t LongestPiece() const;
    /// How often `text` stands in the recording, whoever said it; for a recording that is too long to be taken apart.
    std::size_t TimesRecorded(std::string_view text) const;

    /// A number that a feature knows, or `unknown`.
    static constexpr int unknown = -9999;
    int Number(const char* iid, int getter) const;
    void Set(const char* iid, int setter, int value) const;

    /// Waits for "connected", and compares the mirror with the one of a device with nothing wrong.
    void ExpectConnected();
    /// What is changed at the device is told once; what the host changes comes back and is not told.
    void ExpectConversation();
    /// The host lets go: within a second, and with no observer kept.
    void ExpectLetGo();
    /// The host disconnects, within a second, and lets go: with just these calls of the connection observer from first
    /// to last, and with nothing told behind them.
    void ExpectEnd(const Strings& connectionCalls);

private:
    void Hear(const std::string& id);
    std::vector<Simulator::ConversationEvent> Recorded() const;
    std::string Said(Simulator::ConversationEvent::Kind who) const;

    TemporaryFolder folder_;
    std::string recording_;
    std::unique_ptr<Testing::RunningProgram> program_;
    int marks_ = 0;

    std::mutex lock_;
    std::condition_variable marked_;
    std::string awaitedMark_;
    bool markCame_ = false;
    std::string heard_;
    std::size_t heardCount_ = 0;
    std::size_t heardBeforeTheEnd_ = 0;

    PropertyObserver properties_;
    ConnectionObserver connection_;
    RawObject object_;
};

}  // namespace Morquil::Test
