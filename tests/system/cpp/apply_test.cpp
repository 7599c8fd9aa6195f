// Changes and what becomes of them: the C++ layer, the library and a device.
#include <gtest/gtest.h>

#include <chrono>
#include <future>
#include <string>
#include <thread>
#include <vector>

#include "tests/system/cpp/echoing_device.h"
#include "tests/system/cpp/said.h"

namespace Morquil::Testing {
namespace {

using morquil::Outcome;
using morquil::Result;
using namespace std::chrono_literals;

/// For changes that the device confirms, however busy the machine is.
constexpr std::chrono::seconds settleLimit{60};

TEST(CppApply, ReturnsWhenTheDeviceReportsWhatWasSet) {
    const ConnectedTo connected(Accept);
    const auto amp = connected.host.VideoProcAmp();
    const auto output = connected.host.OutputConfiguration();
    const Outcome outcome = connected.host.Apply(
        [&] {
            amp.SetGain(20);
            output.SetVideoMode(morquil::VideoMode::Mode720p50);
        },
        settleLimit);
    EXPECT_EQ(ToText(outcome), "applied");
    EXPECT_EQ(outcome.acknowledged, 2U);
    EXPECT_EQ(outcome.confirmed, 2U);
    EXPECT_EQ(amp.GetGain(), 20);
    EXPECT_EQ(output.GetVideoMode(), morquil::VideoMode::Mode720p50);
}

TEST(CppApply, OfNothingIsApplied) {
    const ConnectedTo connected(Accept);
    EXPECT_EQ(ToText(connected.host.Apply([] {}, settleLimit)), "applied");
}

TEST(CppApply, SaysThatTheDeviceRefuses) {
    const ConnectedTo connected(Refuse);
    const auto amp = connected.host.VideoProcAmp();
    EXPECT_EQ(ToText(connected.host.Apply([&] { amp.SetGain(99); }, settleLimit)),
              "refused: the device has refused 1 of 1 message");
    EXPECT_EQ(amp.GetGain(), 0);
}

TEST(CppApply, SaysWhatIsRefusedAmongOthers) {
    const ConnectedTo connected(
        [](const std::string& block) { return block.find("VIDEO PROC AMP") == 0 ? Refuse(block) : Accept(block); });
    const Outcome outcome = connected.host.Apply(
        [&] {
            connected.host.VideoProcAmp().SetGain(99);
            connected.host.NoiseReduction().SetEnabled(true);
        },
        settleLimit);
    EXPECT_EQ(ToText(outcome), "refused: the device has refused 1 of 2 messages");
    EXPECT_EQ(outcome.confirmed, 1U);
    EXPECT_TRUE(connected.host.NoiseReduction().GetEnabled());
}

TEST(CppApply, SaysThatTheDeviceReportsAnotherValue) {
    const ConnectedTo connected([](const std::string&) { return "ACK\n\nVIDEO PROC AMP:\nGain: 60\n\n"; });
    const auto amp = connected.host.VideoProcAmp();
    EXPECT_EQ(ToText(connected.host.Apply([&] { amp.SetGain(99); }, settleLimit)),
              "adjusted: the device reports other values in 1 of 1 block");
    EXPECT_EQ(amp.GetGain(), 60);
}

TEST(CppApply, CountsChangesThatWereMergedWhileTheyWaitedInEachOutcome) {
    ConnectedTo connected(SayNothing);
    const auto amp = connected.host.VideoProcAmp();
    std::vector<std::future<Outcome>> outcomes;
    for (const int gain : {1, 2, 3}) {
        outcomes.push_back(connected.host.ApplyAsync([&] { amp.SetGain(gain); }));
        if (gain == 1) {
            EXPECT_EQ(connected.device.NextChange(), "VIDEO PROC AMP:\nGain: 1\n\n");
        }
    }
    connected.device.Send(Accept("VIDEO PROC AMP:\nGain: 1\n\n"));
    EXPECT_EQ(connected.device.NextChange(), "VIDEO PROC AMP:\nGain: 3\n\n");
    connected.device.Send(Accept("VIDEO PROC AMP:\nGain: 3\n\n"));
    for (std::future<Outcome>& outcome : outcomes) {
        ASSERT_EQ(outcome.wait_for(settleLimit), std::future_status::ready);
        EXPECT_EQ(ToText(outcome.get()), "applied");
    }
}

TEST(CppApply, SaysWhatWasSentWhenTheConnectionIsLost) {
    ConnectedTo connected(SayNothing);
    std::future<Outcome> outcome = connected.host.ApplyAsync([&] {
        connected.host.VideoProcAmp().SetGain(1);
        EXPECT_EQ(connected.device.NextChange(), "VIDEO PROC AMP:\nGain: 1\n\n");
        connected.host.NoiseReduction().SetEnabled(true);
    });
    connected.device.HangUp();
    EXPECT_EQ(ToText(outcome.get()), "lost: the connection has ended; 1 message unanswered, 1 not sent");
}

TEST(CppApply, IsLostWhenTheHostDisconnects) {
    ConnectedTo connected(SayNothing);
    std::future<Outcome> outcome = connected.host.ApplyAsync([&] { connected.host.VideoProcAmp().SetGain(1); });
    connected.host.Disconnect();
    EXPECT_EQ(outcome.get(), Result::Lost);
    EXPECT_EQ(connected.host.Apply([] { FAIL() << "there is no connection"; }), Result::Lost);
}

TEST(CppApply, IsLostWhenTheLastCopyOfTheDeviceIsGone) {
    ScriptedDevice device(Answering(SayNothing));
    std::future<Outcome> outcome;
    {
        const morquil::Device host = morquil::Connect(device.Address());
        outcome = host.ApplyAsync([&] { host.VideoProcAmp().SetGain(1); });
    }
    EXPECT_EQ(outcome.get(), Result::Lost);
}

TEST(CppApply, GivesUpAfterItsLimit) {
    ConnectedTo connected(SayNothing);
    EXPECT_EQ(ToText(connected.host.Apply([&] { connected.host.VideoProcAmp().SetGain(1); }, 1ms)),
              "timed out: the device has not answered yet");
    // The late answer changes the mirror, and nothing else.
    Said<int> gain;
    const morquil::Subscription reports =
        connected.host.OnReport([&](const morquil::Report&) { gain.Say(connected.host.VideoProcAmp().GetGain()); });
    connected.device.Send(Accept("VIDEO PROC AMP:\nGain: 1\n\n"));
    EXPECT_EQ(gain.Await(), 1);
}

TEST(CppApply, ThrowsWhatASetterThrows) {
    const ConnectedTo connected(Accept);
    const auto output = connected.host.OutputConfiguration();
    const auto setNonsense = [&] { output.SetVideoMode(static_cast<morquil::VideoMode>(34)); };
    EXPECT_THROW(connected.host.Apply(setNonsense), morquil::InvalidArgument);
    EXPECT_THROW(connected.host.ApplyAsync(setNonsense), morquil::InvalidArgument);
    EXPECT_EQ(connected.host.Apply([&] { connected.host.VideoProcAmp().SetGain(1); }, settleLimit), Result::Applied);
}

TEST(CppApply, CoversOnlyWhatItsOwnThreadSets) {
    ConnectedTo connected(Accept);
    const Outcome outcome = connected.host.Apply(
        [&] { std::thread([&] { connected.host.VideoProcAmp().SetGain(1); }).join(); }, settleLimit);
    EXPECT_EQ(outcome.acknowledged, 0U);
    EXPECT_EQ(connected.device.NextChange(), "VIDEO PROC AMP:\nGain: 1\n\n");
}

TEST(CppApply, RefusesToWaitInAHandlerThatHoldsUpTheConnection) {
    ConnectedTo connected(Accept);
    Said<bool> refused;
    const morquil::Subscription changes =
        connected.host.OnChange(morquil::PropertySet::VideoProcAmp, [&](morquil::PropertySet) {
            try {
                connected.host.Apply([] {});
                refused.Say(false);
            } catch (const morquil::WouldDeadlock&) {
                refused.Say(true);
            }
        });
    connected.device.Send("VIDEO PROC AMP:\nGain: 7\n\n");
    EXPECT_EQ(refused.Await(), true);
}

TEST(CppApply, WorksInAHandlerWithoutWaiting) {
    ConnectedTo connected(Accept);
    Said<std::string> text;
    morquil::Subscription pending;
    const morquil::Subscription changes =
        connected.host.OnChange(morquil::PropertySet::VideoProcAmp, [&](morquil::PropertySet) {
            pending = connected.host.ApplyAsync([&] { connected.host.NoiseReduction().SetEnabled(true); },
                                                [&](const Outcome& outcome) { text.Say(ToText(outcome)); });
        });
    connected.device.Send("VIDEO PROC AMP:\nGain: 7\n\n");
    EXPECT_EQ(text.Await(), "applied");
}

TEST(CppApply, MayWaitInTheHandlerOfANewConnection) {
    ScriptedDevice device(Answering(Accept));
    std::promise<morquil::Device> made;
    Said<std::string> text;
    const auto setUp = [&] {
        const morquil::Device host = made.get_future().get();
        text.Say(ToText(host.Apply([&] { host.VideoProcAmp().SetGain(1); }, settleLimit)));
    };
    const morquil::Connecting connecting = morquil::ConnectAsync(device.Address(), {setUp, {}});
    made.set_value(connecting.device);
    EXPECT_EQ(text.Await(), "applied");
    connecting.device.Disconnect();
}

TEST(CppApply, ReportsNothingOnceItsSubscriptionHasEnded) {
    ConnectedTo connected(SayNothing);
    int calls = 0;
    const auto amp = connected.host.VideoProcAmp();
    {
        const morquil::Subscription pending =
            connected.host.ApplyAsync([&] { amp.SetGain(1); }, [&](const Outcome&) { ++calls; });
        EXPECT_EQ(connected.device.NextChange(), "VIDEO PROC AMP:\nGain: 1\n\n");
    }
    connected.device.Send(Accept("VIDEO PROC AMP:\nGain: 1\n\n"));
    std::future<Outcome> next = connected.host.ApplyAsync([&] { amp.SetGain(2); });
    EXPECT_EQ(connected.device.NextChange(), "VIDEO PROC AMP:\nGain: 2\n\n");
    connected.device.Send(Accept("VIDEO PROC AMP:\nGain: 2\n\n"));
    EXPECT_EQ(next.get(), Result::Applied);
    EXPECT_EQ(calls, 0);
}

TEST(CppApply, WorksAThousandTimesAtOnceOnSeveralThreads) {
    const ConnectedTo connected(Accept);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&] {
            const auto amp = connected.host.VideoProcAmp();
            std::vector<std::future<Outcome>> outcomes;
            for (int change = 0; change < 250; ++change) {
                outcomes.push_back(connected.host.ApplyAsync([&] { amp.SetGain(7); }));
            }
            EXPECT_EQ(connected.host.Apply([&] { amp.SetGain(7); }, settleLimit), Result::Applied);
            for (std::future<Outcome>& outcome : outcomes) {
                ASSERT_EQ(outcome.wait_for(settleLimit), std::future_status::ready);
                EXPECT_EQ(outcome.get(), Result::Applied);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

TEST(CppApply, WorksInASession) {
    ScriptedDevice device(Answering(Accept));
    Said<std::string> whenConnected;
    morquil::SessionHandlers handlers;
    handlers.connected = [&](const morquil::Device& host) {
        whenConnected.Say(ToText(host.Apply([&] { host.VideoProcAmp().SetGain(5); }, settleLimit)));
    };
    morquil::Session session(device.Address(), handlers);
    EXPECT_EQ(whenConnected.Await(), "applied");
    const auto setGain = [](const morquil::Device& host) { host.VideoProcAmp().SetGain(6); };
    EXPECT_EQ(ToText(session.Apply(setGain, settleLimit)), "applied");
    EXPECT_EQ(session.Current()->VideoProcAmp().GetGain(), 6);
    session.Stop();
    EXPECT_TRUE(device.AwaitHostGone());
}

TEST(CppApply, IsLostInASessionBetweenTwoConnections) {
    ScriptedDevice silent;
    const morquil::Session session(silent.Address(), {});
    EXPECT_TRUE(silent.AwaitHost());
    EXPECT_EQ(session.Apply([](const morquil::Device&) { FAIL() << "there is no device"; }), Result::Lost);
}

}  // namespace
}  // namespace Morquil::Testing
