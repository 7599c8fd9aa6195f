// Notices of changes with old and new value.
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "tests/system/cpp/echoing_device.h"

namespace Morquil::Testing {
namespace {

using morquil::PropertyChange;
using morquil::ReportOrigin;

constexpr std::chrono::seconds noticedWithin{60};

std::string InWords(const PropertyChange& change) {
    const auto text = [](const auto& value) { return value ? value->Text() : std::string("?"); };
    return std::string(change.property.Info().name) + " " + text(change.before) + " -> " + text(change.after) +
           (change.origin == ReportOrigin::Echo ? ", own" : "");
}

/// The changes that a host is notified of, in words.
class Notices {
public:
    void Add(const PropertyChange& change) {
        const std::lock_guard lock(mutex_);
        words_.push_back(InWords(change));
        added_.notify_all();
    }
    std::vector<std::string> Await(std::size_t count) {
        std::unique_lock lock(mutex_);
        added_.wait_for(lock, noticedWithin, [&] { return words_.size() >= count; });
        return words_;
    }

private:
    std::mutex mutex_;
    std::condition_variable added_;
    std::vector<std::string> words_;
};

using Texts = std::vector<std::string>;

TEST(CppPropertyChanges, HaveTheOldAndTheNewValue) {
    ConnectedTo connected(Accept);
    Notices notices;
    const morquil::Subscription all =
        connected.host.OnPropertyChange("*", [&](const PropertyChange& change) { notices.Add(change); });
    connected.device.Send("VIDEO OUTPUT:\nVideo mode: 720p50\n\n");
    connected.device.Send("VIDEO PROC AMP:\nGain: 7\nHue: 1\n\n");
    EXPECT_EQ(notices.Await(3),
              (Texts{"output.video-mode 1080i50 -> 720p50", "proc-amp.gain 0 -> 7", "proc-amp.hue 0 -> 1"}));
}

TEST(CppPropertyChanges, IncludeTheHostsOwn) {
    ConnectedTo connected(Accept);
    Notices notices;
    const morquil::Subscription all =
        connected.host.OnPropertyChange("proc-amp", [&](const PropertyChange& change) { notices.Add(change); });
    EXPECT_TRUE(connected.host["proc-amp.gain"].Apply(20, noticedWithin).IsApplied());
    EXPECT_EQ(notices.Await(1), (Texts{"proc-amp.gain 0 -> 20, own"}));
}

TEST(CppPropertyChanges, BeginWithWhatWasNotKnown) {
    ConnectedTo connected(Accept);
    Notices notices;
    const morquil::Subscription all =
        connected.host.OnPropertyChange("clip.*", [&](const PropertyChange& change) { notices.Add(change); });
    connected.device.Send("VIDEO ADJUST:\nLuma high: 900\nLuma low: 4\n\n");
    EXPECT_EQ(notices.Await(1), (Texts{"clip.luma-high ? -> 900"}));
}

TEST(CppPropertyChanges, AreOnlyThoseOfThePattern) {
    ConnectedTo connected(Accept);
    Notices notices;
    const morquil::Subscription gain =
        connected.host.OnPropertyChange("proc-amp.gain", [&](const PropertyChange& change) { notices.Add(change); });
    connected.device.Send("VIDEO PROC AMP:\nHue: 1\n\n");
    connected.device.Send("VIDEO PROC AMP:\nGain: 7\n\n");
    EXPECT_EQ(notices.Await(1), (Texts{"proc-amp.gain 0 -> 7"}));
    EXPECT_THROW(static_cast<void>(connected.host.OnPropertyChange("proc-am", [](const PropertyChange&) {})),
                 morquil::NoSuchProperty);
}

TEST(CppPropertyChanges, DoNotRepeatAReportWithoutAChange) {
    ConnectedTo connected(Accept);
    Notices notices;
    const morquil::Subscription all =
        connected.host.OnPropertyChange("proc-amp", [&](const PropertyChange& change) { notices.Add(change); });
    connected.device.Send("VIDEO PROC AMP:\nGain: 7\n\n");
    connected.device.Send("VIDEO PROC AMP:\nGain: 7\n\n");
    connected.device.Send("VIDEO PROC AMP:\nGain: 8\n\n");
    EXPECT_EQ(notices.Await(2), (Texts{"proc-amp.gain 0 -> 7", "proc-amp.gain 7 -> 8"}));
}

TEST(CppPropertyChanges, EndWithTheirSubscription) {
    ConnectedTo connected(Accept);
    Notices ended;
    Notices others;
    morquil::Subscription first =
        connected.host.OnPropertyChange("proc-amp", [&](const PropertyChange& change) { ended.Add(change); });
    const morquil::Subscription second =
        connected.host.OnPropertyChange("proc-amp", [&](const PropertyChange& change) { others.Add(change); });
    first.Cancel();
    connected.device.Send("VIDEO PROC AMP:\nGain: 7\n\n");
    EXPECT_EQ(others.Await(1).size(), 1U);
    EXPECT_TRUE(ended.Await(0).empty());
}

TEST(CppPropertyChanges, MayBeAnsweredInTheirHandler) {
    ConnectedTo connected(Accept);
    Notices notices;
    const morquil::Subscription all = connected.host.OnPropertyChange("proc-amp", [&](const PropertyChange& change) {
        notices.Add(change);
        if (change.after && change.after->As<int>() == 7) {
            change.property.Set(8);
        }
    });
    connected.device.Send("VIDEO PROC AMP:\nGain: 7\n\n");
    EXPECT_EQ(notices.Await(2), (Texts{"proc-amp.gain 0 -> 7", "proc-amp.gain 7 -> 8, own"}));
}

TEST(CppPropertyChanges, RunWhereTheHostWantsThemTo) {
    ConnectedTo connected(Accept);
    Notices notices;
    std::mutex mutex;
    std::condition_variable arrived;
    std::vector<std::function<void()>> queue;
    const morquil::Subscription all = connected.host.OnPropertyChange(
        "proc-amp", [&](const PropertyChange& change) { notices.Add(change); },
        [&](std::function<void()> handler) {
            const std::lock_guard lock(mutex);
            queue.push_back(std::move(handler));
            arrived.notify_all();
        });
    connected.device.Send("VIDEO PROC AMP:\nGain: 7\n\n");
    std::unique_lock lock(mutex);
    ASSERT_TRUE(arrived.wait_for(lock, noticedWithin, [&] { return !queue.empty(); }));
    EXPECT_TRUE(notices.Await(0).empty());
    queue.front()();
    EXPECT_EQ(notices.Await(1), (Texts{"proc-amp.gain 0 -> 7"}));
}

}  // namespace
}  // namespace Morquil::Testing
