#include "tests/system/host/faulty_device.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <thread>
#include <utility>

#include "tests/kit/watchdog.h"
#include "tests/system/host/watched_device.h"

namespace Morquil::Testing {

namespace {

using std::chrono::steady_clock;

/// Slots of one interface that return the minimum and the maximum of a value.
struct Ranges {
    const char* iid;
    std::vector<int> slots;
};
// clang-format off
const std::vector<Ranges> ranges = {
    {Iid::videoProcAmp, {5, 8, 11, 14, 17, 20, 23}}, {Iid::colorCorrection, {5, 8, 11}},
    {Iid::videoClip, {5, 8, 11, 14}}, {Iid::aspectFill, {5, 8, 11}}, {Iid::variableAspectRatio, {17, 20}}};
// clang-format on

std::string SavedSettings(const RawObject& device) {
    const TemporaryFolder folder;
    const std::string path = folder.PathOf("settings.txt");
    EXPECT_EQ(device.Call(Slot::saveSettingsFile, HostText(path).Get()), okFalse);
    return ContentOf(path);
}

std::string KnownRanges(const RawObject& device) {
    std::string text;
    for (const Ranges& known : ranges) {
        const RawObject feature = device.QueryInterface(known.iid);
        for (const int slot : known.slots) {
            int least = 0;
            int greatest = 0;
            text += feature.Call(slot, &least, &greatest) == ok
                        ? std::to_string(least) + " to " + std::to_string(greatest) + "\n"
                        : "no range\n";
        }
    }
    return text;
}

std::string KnownConversions(const RawObject& device) {
    constexpr int videoModes = 34;
    constexpr int aspectRatios = 5;
    std::string text;
    for (int input = 0; input < videoModes; ++input) {
        for (int output = 0; output < videoModes; ++output) {
            for (int aspectRatio = 0; aspectRatio < aspectRatios; ++aspectRatio) {
                std::int32_t supported = 0;
                EXPECT_EQ(device.Call(Slot::isConversionSupported, input, output, aspectRatio, &supported), ok);
                text += supported != 0 ? '+' : '-';
            }
        }
        text += '\n';
    }
    return text;
}

std::string FirstPresetName(const RawObject& device) {
    HostText name;
    device.QueryInterface(Iid::preset).Call(6, 0, name.Out());
    const std::u16string text = name.Text();
    return {text.begin(), text.end()};
}

std::u16string FriendlyName(const RawObject& device) {
    HostText name;
    device.QueryInterface(Iid::networkConfig).Call(3, name.Out());
    return name.Text();
}

std::unique_ptr<RunningProgram> Started(FaultyDevice::Options options, const std::string& recording) {
    options.recordFile = recording;
    return RunningProgram::AtAnyAddress(std::move(options));
}

}  // namespace

bool Eventually(const std::function<bool()>& condition) {
    const auto deadline = steady_clock::now() + std::chrono::seconds(10);
    while (!condition()) {
        if (steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::yield();
    }
    return true;
}

std::string MirrorOf(const RawObject& device) {
    return SavedSettings(device) + KnownRanges(device) + KnownConversions(device) + FirstPresetName(device);
}

const std::string& HealthyMirror() {
    static const std::string mirror = [] {
        const auto program = RunningProgram::AtAnyAddress({});
        const ConnectOutcome outcome = Connect(program->Address());
        std::string text = MirrorOf(outcome.device);
        Disconnect(outcome.device);
        return text;
    }();
    return mirror;
}

const std::string& EmptyMirror() {
    static const std::string mirror = [] {
        const auto program = RunningProgram::AtAnyAddress({});
        const ConnectOutcome outcome = Connect(program->Address());
        Disconnect(outcome.device);
        return MirrorOf(outcome.device);
    }();
    return mirror;
}

FaultyDevice::FaultyDevice(Options options, Recording recording)
    : recording_(recording == Recording::Yes ? folder_.PathOf("conversation.txt") : ""),
      program_(Started(std::move(options), recording_)) {
    properties_.InCall([this](const std::string& id) { Note(id); });
    connection_.InCall([this](const std::string& notification) {
        const std::lock_guard lock(lock_);
        notifiedBeforeTheEnd_ = notification == "connected" ? notifiedBeforeTheEnd_ : notifiedCount_;
    });
    object_ = ConnectAsync(Address(), connection_);
    for (const char* const id : propertySets) {
        EXPECT_EQ(object_.Call(Slot::addPropertyObserver, properties_.Get(),
                               FourCharacters({id[0], id[1], id[2], id[3], '\0'})),
                  ok);
    }
}

FaultyDevice::~FaultyDevice() = default;

// The name is read during its notification; nothing else changes it.
void FaultyDevice::Note(const std::string& id) {
    const std::u16string name = id == "ntwk" ? FriendlyName(object_) : std::u16string();
    const std::lock_guard lock(lock_);
    ++notifiedCount_;
    if (!awaitedMark_.empty() && std::u16string(awaitedMark_.begin(), awaitedMark_.end()) == name) {
        markCame_ = true;
        marked_.notify_all();
    } else {
        notified_ += (notified_.empty() ? "" : " ") + id;
    }
}

// The device's blocks arrive in order, so a host that is notified of its new name has been notified of everything
// before it.
std::string FaultyDevice::TakeNotifications() {
    std::unique_lock lock(lock_);
    awaitedMark_ = "Mark " + std::to_string(++marks_);
    markCame_ = false;
    Submit("set NETWORK CONFIG Friendly name " + awaitedMark_);
    EXPECT_TRUE(marked_.wait_for(lock, std::chrono::seconds(10), [this] { return markCame_; }));
    awaitedMark_.clear();
    return std::exchange(notified_, {});
}

std::string FaultyDevice::TakeNotificationsUntilTheEnd() {
    const std::lock_guard lock(lock_);
    return std::exchange(notified_, {});
}

// The device may still be working on the last line.
std::vector<Simulator::ConversationEvent> FaultyDevice::Recorded() const {
    std::string text = ContentOf(recording_);
    text.erase(text.rfind('\n') + 1);
    return Simulator::ReadConversation(text).events;
}

std::string FaultyDevice::Said(Simulator::ConversationEvent::Kind who) const {
    std::string text;
    for (const auto& event : Recorded()) {
        text += event.kind == who ? event.text : "";
    }
    return text;
}

std::size_t FaultyDevice::TimesRecorded(std::string_view text) const {
    const std::string recorded = ContentOf(recording_);
    std::size_t times = 0;
    for (std::size_t at = recorded.find(text); at != std::string::npos; at = recorded.find(text, at + text.size())) {
        ++times;
    }
    return times;
}

std::size_t FaultyDevice::LongestPiece() const {
    std::size_t longest = 0;
    for (const auto& event : Recorded()) {
        const bool isDevices = event.kind == Simulator::ConversationEvent::Kind::DeviceSays;
        longest = std::max(longest, isDevices ? event.text.size() : 0);
    }
    return longest;
}

int FaultyDevice::Number(const char* iid, int getter) const {
    int value = unknown;
    object_.QueryInterface(iid).Call(getter, &value);
    return value;
}

void FaultyDevice::Set(const char* iid, int setter, int value) const {
    EXPECT_EQ(object_.QueryInterface(iid).Call(setter, value), ok);
}

void FaultyDevice::ExpectConnected() {
    ASSERT_TRUE(AwaitConnectionCalls(1));
    ASSERT_EQ(ConnectionCalls(), Strings{"connected"});
    EXPECT_EQ(MirrorOf(object_), HealthyMirror());
    TakeNotifications();
}

void FaultyDevice::ExpectConversation() {
    const std::string before = MirrorOf(object_);
    Submit("set VIDEO PROC AMP Gain 12");
    EXPECT_EQ(TakeNotifications(), "vpap");
    EXPECT_EQ(Number(Iid::videoProcAmp, 4), 12);

    Set(Iid::videoProcAmp, 18, -26);
    EXPECT_TRUE(Eventually([this] { return Number(Iid::videoProcAmp, 19) == -26; }));
    EXPECT_EQ(TakeNotifications(), "");
    EXPECT_EQ(Number(Iid::videoProcAmp, 4), 12);

    Submit("set VIDEO PROC AMP Gain 0");
    Submit("set VIDEO PROC AMP BY 0");
    TakeNotifications();
    EXPECT_EQ(MirrorOf(object_), before);
}

void FaultyDevice::ExpectReleased() {
    // An attempt in progress holds a reference until its thread has returned.
    EXPECT_TRUE(Eventually([this] { return object_.References() == 1U; }));
    EXPECT_EQ(WithinASecond([this] { return object_.Release(); }), 0U);
    EXPECT_TRUE(properties_.AwaitRelease());
    EXPECT_TRUE(connection_.AwaitRelease());
}

void FaultyDevice::ExpectEnd(const Strings& connectionCalls) {
    WithinASecond([this] { Disconnect(object_); });

    EXPECT_EQ(ConnectionCalls(), connectionCalls);
    EXPECT_EQ(MirrorOf(object_), EmptyMirror());
    ExpectReleased();
    EXPECT_EQ(ConnectionCalls(), connectionCalls);
    const std::lock_guard lock(lock_);
    EXPECT_EQ(notifiedCount_, notifiedBeforeTheEnd_) << "a property set was notified after the end";
}

}  // namespace Morquil::Testing
