// A connection that is re-established.
#include <gtest/gtest.h>

#include <future>
#include <optional>
#include <string>

#include "tests/system/cpp/connected.h"

namespace Morquil::Testing {
namespace {

using morquil::ConnectFailure;

/// What a session has reported, in order.
class Diary {
public:
    morquil::SessionHandlers Handlers() {
        return {[this](const morquil::Device& device) { Write("connected " + device.GetDeviceName()); },
                [this](ConnectFailure reason) { Write("lost: " + ToText(reason)); },
                [this](ConnectFailure reason, std::chrono::milliseconds) { Write("failed: " + ToText(reason)); }};
    }
    std::string Next() {
        std::unique_lock lock(mutex_);
        if (!written_.wait_for(lock, std::chrono::seconds(10), [this] { return read_ < entries_.size(); })) {
            return "(nothing)";
        }
        return entries_[read_++];
    }
    std::size_t Unread() {
        const std::lock_guard lock(mutex_);
        return entries_.size() - read_;
    }

private:
    void Write(const std::string& entry) {
        const std::lock_guard lock(mutex_);
        entries_.push_back(entry);
        written_.notify_all();
    }

    std::mutex mutex_;
    std::condition_variable written_;
    std::vector<std::string> entries_;
    std::size_t read_ = 0;
};

morquil::SessionOptions Quickly() {
    morquil::SessionOptions options;
    options.firstDelay = std::chrono::milliseconds(1);
    options.longestDelay = std::chrono::milliseconds(4);
    return options;
}

TEST(CppSession, ComesBackAfterEveryLoss) {
    ScriptedDevice device(CompleteDevice());
    Diary diary;
    const morquil::Session session(device.Address(), diary.Handlers(), Quickly());
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(diary.Next(), "connected Scripted");
        ASSERT_TRUE(session.Current());
        EXPECT_EQ(session.Current()->GetDeviceName(), "Scripted");
        device.HangUp();
        EXPECT_EQ(diary.Next(), "lost: no answer from a device");
    }
    EXPECT_EQ(diary.Next(), "connected Scripted");
}

TEST(CppSession, ReportsWhyItsAttemptsFail) {
    ScriptedDevice device(
        {.greeting = std::string(preamble) + "MORQUIL DEVICE:\nModel name: Scripted\nRemote lock: true\n\n"});
    Diary diary;
    const morquil::Session session(device.Address(), diary.Handlers(), Quickly());
    EXPECT_EQ(diary.Next(), "failed: the device is locked against remote control");
    EXPECT_EQ(diary.Next(), "failed: the device is locked against remote control");
    EXPECT_FALSE(session.Current());
}

TEST(CppSession, DoublesItsDelaysUpToTheLongest) {
    ScriptedDevice device({.greeting = "PROTOCOL PREAMBLE:\nVersion: 2.21\n\n"});
    std::mutex mutex;
    std::condition_variable notified;
    std::vector<int> delays;
    morquil::SessionOptions options;
    options.firstDelay = std::chrono::milliseconds(4);
    options.longestDelay = std::chrono::milliseconds(20);
    const morquil::Session session(device.Address(),
                                   {{},
                                    {},
                                    [&](ConnectFailure, std::chrono::milliseconds delay) {
                                        const std::lock_guard lock(mutex);
                                        delays.push_back(static_cast<int>(delay.count()));
                                        notified.notify_all();
                                    }},
                                   options);
    std::unique_lock lock(mutex);
    ASSERT_TRUE(notified.wait_for(lock, std::chrono::seconds(10), [&] { return delays.size() >= 5; }));
    const int nominal[] = {4, 8, 16, 20, 20};
    for (std::size_t attempt = 0; attempt < 5; ++attempt) {
        EXPECT_NEAR(delays[attempt], nominal[attempt], nominal[attempt] / 4.0) << attempt;
    }
}

TEST(CppSession, StopsWhileItConnectsAndWhileItWaits) {
    ScriptedDevice silent;
    const auto began = std::chrono::steady_clock::now();
    {
        const morquil::Session connecting(silent.Address(), {});
        EXPECT_TRUE(silent.AwaitHost());
    }
    {
        Diary diary;
        morquil::SessionOptions slow;
        slow.firstDelay = slow.longestDelay = std::chrono::hours(1);
        ScriptedDevice wrong({.greeting = "PROTOCOL PREAMBLE:\nVersion: 2.21\n\n"});
        const morquil::Session waiting(wrong.Address(), diary.Handlers(), slow);
        diary.Next();
    }
    EXPECT_LT(std::chrono::steady_clock::now() - began, std::chrono::seconds(5));
}

TEST(CppSession, ReportsNothingOnceItIsStopped) {
    ScriptedDevice device(CompleteDevice());
    Diary diary;
    morquil::Session session(device.Address(), diary.Handlers(), Quickly());
    EXPECT_EQ(diary.Next(), "connected Scripted");
    session.Stop();
    EXPECT_TRUE(device.AwaitHostGone());
    EXPECT_EQ(diary.Unread(), 0U);
}

TEST(CppSession, MayEndInsideItsOwnHandler) {
    ScriptedDevice device(CompleteDevice());
    std::promise<void> ended;
    std::optional<morquil::Session> session;
    std::mutex made;
    std::unique_lock making(made);
    session.emplace(device.Address(),
                    morquil::SessionHandlers{[&](const morquil::Device&) {
                                                 std::unique_lock(made).unlock();  // before the test goes on
                                                 session.reset();
                                                 ended.set_value();
                                             },
                                             {},
                                             {}},
                    Quickly());
    making.unlock();
    EXPECT_EQ(ended.get_future().wait_for(std::chrono::seconds(10)), std::future_status::ready);
    EXPECT_TRUE(device.AwaitHostGone());
}

}  // namespace
}  // namespace Morquil::Testing
