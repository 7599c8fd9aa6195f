// Where a host has the library's text go.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <string>
#include <string_view>
#include <vector>

#include "platform/text.h"
#include "tests/kit/threads.h"
#include "tests/kit/watchdog.h"
#include "tests/unit/device/recording_observers.h"
#include "transport/console.h"

namespace Morquil {
namespace {

using namespace Testing;
using Texts = std::vector<std::string>;

class LineObserver final : public RecordingObserver<IMorquilConsoleObserver> {
public:
    STDMETHODIMP Line(BSTR text) override { return Note(Utf8FromBstr(text)); }
};

HRESULT ToStandardOutput() {
    return SetConsoleOutput(morquilConsoleStandardOutput, nullptr);
}
HRESULT ToNowhere() {
    return SetConsoleOutput(morquilConsoleSilent, nullptr);
}

class ConsoleOutput : public testing::Test {
protected:
    ~ConsoleOutput() override {
        observer->onCall = nullptr;
        ToStandardOutput();
        EXPECT_EQ(observer->References(), 1U);
    }

    HRESULT ToObserver() { return SetConsoleOutput(morquilConsoleObserver, observer.Get()); }
    /// What reaches standard output meanwhile.
    template <class Act>
    static std::string Printed(Act act) {
        testing::internal::CaptureStdout();
        act();
        return testing::internal::GetCapturedStdout();
    }

    const Watchdog watchdog;
    Held<LineObserver> observer;
    ReceivedText received;
};

// ---- Modes ----------------------------------------------------------------------------------------------------------

TEST_F(ConsoleOutput, IsStandardOutputAtFirst) {
    EXPECT_EQ(Printed([&] {
                  Print("connected\n");
                  received.Print("VIDEO PROC");
                  received.Print(" AMP:\n");
                  received.Finish();
              }),
              "connected\nVIDEO PROC AMP:\n");
}

TEST_F(ConsoleOutput, MayBeSilent) {
    EXPECT_EQ(ToNowhere(), S_OK);
    EXPECT_EQ(Printed([&] {
                  Print("connected\n");
                  received.Print("VIDEO PROC AMP:\nGain");
                  received.Finish();
              }),
              "");
}

TEST_F(ConsoleOutput, MayBeAnObserver) {
    EXPECT_EQ(ToObserver(), S_OK);
    EXPECT_EQ(Printed([&] {
                  Print("connected\n");
                  received.Print("VIDEO PROC AMP:\n");
              }),
              "");
    EXPECT_EQ(observer->Notifications(), (Texts{"connected", "VIDEO PROC AMP:"}));
}

TEST_F(ConsoleOutput, MayBecomeStandardOutputAgain) {
    ToObserver();
    EXPECT_EQ(ToStandardOutput(), S_OK);
    EXPECT_EQ(observer->References(), 1U);
    EXPECT_EQ(Printed([] { Print("connected\n"); }), "connected\n");
    EXPECT_TRUE(observer->Notifications().empty());
}

TEST_F(ConsoleOutput, MayBeAnotherObserver) {
    const Held<LineObserver> second;
    ToObserver();
    Print("first\n");
    EXPECT_EQ(SetConsoleOutput(morquilConsoleObserver, second.Get()), S_OK);
    EXPECT_EQ(observer->References(), 1U);
    Print("second\n");
    EXPECT_EQ(observer->Notifications(), Texts{"first"});
    EXPECT_EQ(second->Notifications(), Texts{"second"});
    ToNowhere();
    EXPECT_EQ(second->References(), 1U);
}

TEST_F(ConsoleOutput, MayBeTheSameObserverAgain) {
    ToObserver();
    EXPECT_EQ(ToObserver(), S_OK);
    EXPECT_EQ(observer->References(), 2U);
    Print("once\n");
    EXPECT_EQ(observer->Notifications(), Texts{"once"});
}

TEST_F(ConsoleOutput, IsUnchangedAfterBadInput) {
    ToObserver();
    const Held<LineObserver> second;
    EXPECT_EQ(SetConsoleOutput(morquilConsoleObserver, nullptr), E_INVALIDARG);
    EXPECT_EQ(SetConsoleOutput(morquilConsoleStandardOutput, second.Get()), E_INVALIDARG);
    EXPECT_EQ(SetConsoleOutput(morquilConsoleSilent, second.Get()), E_INVALIDARG);
    EXPECT_EQ(SetConsoleOutput(static_cast<_MorquilConsoleMode>(3), nullptr), E_INVALIDARG);
    EXPECT_EQ(SetConsoleOutput(static_cast<_MorquilConsoleMode>(3), second.Get()), E_INVALIDARG);
    EXPECT_EQ(SetConsoleOutput(static_cast<_MorquilConsoleMode>(-1), nullptr), E_INVALIDARG);
    Print("still here\n");
    EXPECT_EQ(observer->Notifications(), Texts{"still here"});
    EXPECT_EQ(second->References(), 1U);
}

// ---- Lines ----------------------------------------------------------------------------------------------------------

TEST_F(ConsoleOutput, IsWholeLinesHoweverTheyArrive) {
    ToObserver();
    for (const char* const piece : {"VIDEO", " PROC AMP:\nGa", "in: 5", "\n", "\nACK\n\nGEN", ""}) {
        received.Print(piece);
    }
    EXPECT_EQ(observer->Notifications(), (Texts{"VIDEO PROC AMP:", "Gain: 5", "", "ACK", ""}));
}

TEST_F(ConsoleOutput, LeavesOutTheEndsOfLinesOfEitherSystem) {
    ToObserver();
    for (const char* const piece : {"one\r\ntwo\r", "\nthree\n\r\n", "fo\rur\r\r\n"}) {
        received.Print(piece);
    }
    EXPECT_EQ(observer->Notifications(), (Texts{"one", "two", "three", "", "fo\rur\r"}));
}

TEST_F(ConsoleOutput, IncludesAnUnfinishedLineAtTheEnd) {
    ToObserver();
    received.Print("ACK\nVIDEO PR");
    received.Finish();
    received.Finish();
    EXPECT_EQ(observer->Notifications(), (Texts{"ACK", "VIDEO PR"}));
}

TEST_F(ConsoleOutput, KeepsALineOf4096BytesWhole) {
    ToObserver();
    const std::string line(4096, 'a');
    received.Print(line + "\n" + line + "\r\n");
    received.Print(line);
    received.Print("\r");
    received.Print("\n");
    EXPECT_EQ(observer->Notifications(), (Texts{line, line, line}));
}

TEST_F(ConsoleOutput, CutsALongerLineIntoPieces) {
    ToObserver();
    received.Print(std::string(4097, 'a') + "\n" + std::string(8192, 'b') + "\r\nshort\n");
    EXPECT_EQ(observer->Notifications(),
              (Texts{std::string(4096, 'a'), "a", std::string(4096, 'b'), std::string(4096, 'b'), "short"}));
}

TEST_F(ConsoleOutput, CutsALineThatNeverEnds) {
    ToObserver();
    for (int count = 0; count < 10; ++count) {
        received.Print(std::string(1000, '\r'));
    }
    EXPECT_EQ(observer->Notifications().size(), 2U);
}

TEST_F(ConsoleOutput, CutsBetweenCharacters) {
    ToObserver();
    received.Print(std::string(4095, 'a') + "\xC3\xA9z\n");
    EXPECT_EQ(observer->Notifications(), (Texts{std::string(4095, 'a'), "\xC3\xA9z"}));
    observer->TakeNotifications();
    received.Print(std::string(4093, 'a') + "\xF0\x9F\x98\x80\n");
    EXPECT_EQ(observer->Notifications(), (Texts{std::string(4093, 'a'), "\xF0\x9F\x98\x80"}));
}

TEST_F(ConsoleOutput, PassesOnBytesThatAreNoText) {
    ToObserver();
    received.Print("\xFF\xFE\n" + std::string(5000, '\x80') + "\n");
    EXPECT_EQ(observer->Notifications().size(), 3U);
    EXPECT_EQ(observer->Notifications().front(), "\xEF\xBF\xBD\xEF\xBF\xBD");
}

// ---- Changes --------------------------------------------------------------------------------------------------------

TEST_F(ConsoleOutput, ContinuesALineOnStandardOutput) {
    ToObserver();
    received.Print("VIDEO PR");
    ToStandardOutput();
    EXPECT_EQ(Printed([&] { received.Print("OC AMP:\n"); }), "VIDEO PROC AMP:\n");
    EXPECT_TRUE(observer->Notifications().empty());
}

TEST_F(ConsoleOutput, ForgetsTheBeginningOfALineInSilence) {
    ToObserver();
    received.Print("VIDEO PR");
    ToNowhere();
    received.Print("OC AMP:\nGa");
    ToObserver();
    received.Print("in: 5\n");
    EXPECT_EQ(observer->Notifications(), Texts{"in: 5"});
}

TEST_F(ConsoleOutput, MayBeChangedInItsCallback) {
    ToObserver();
    observer->onCall = [] { EXPECT_EQ(ToStandardOutput(), S_OK); };
    EXPECT_EQ(Printed([&] { received.Print("one\ntwo\nthree\n"); }), "two\nthree\n");
    EXPECT_EQ(observer->Notifications(), Texts{"one"});
    EXPECT_EQ(observer->References(), 1U) << "released after the call";
}

TEST_F(ConsoleOutput, MayPrintInItsCallback) {
    ToObserver();
    observer->onCall = [&] {
        observer->onCall = nullptr;
        Print("two\n");
    };
    Print("one\n");
    EXPECT_EQ(observer->Notifications(), (Texts{"one", "two"}));
}

TEST_F(ConsoleOutput, IsChangedAfterACallInProgress) {
    std::atomic<bool> mayEnd = false;
    std::atomic<bool> hasEnded = false;
    ToObserver();
    observer->onCall = [&] {
        EXPECT_TRUE(Monitor::Await([&] { return mayEnd.load(); }));
        hasEnded = true;
    };
    const Threads printing(1, [] { Print("slow\n"); });
    ASSERT_TRUE(observer->AwaitNotified(1));
    const Threads changing(1, [&] {
        EXPECT_EQ(ToNowhere(), S_OK);
        EXPECT_TRUE(hasEnded) << "it has waited";
        EXPECT_EQ(observer->References(), 1U) << "released before it returns";
    });
    const auto lock = Monitor::Enter();
    mayEnd = true;
    Monitor::Changed();
}

TEST_F(ConsoleOutput, IsChangedWithoutWaitingInsideAnotherCallback) {
    std::atomic<bool> mayEnd = false;
    ToObserver();
    observer->onCall = [&] {
        if (observer->Notifications().size() == 1) {
            EXPECT_TRUE(Monitor::Await([&] { return mayEnd.load(); }));
        } else {
            EXPECT_EQ(ToNowhere(), S_OK);
        }
    };
    const Threads slow(1, [] { Print("slow\n"); });
    ASSERT_TRUE(observer->AwaitNotified(1));
    {
        const Threads other(1, [] { Print("other\n"); });
    }
    Print("nowhere\n");
    EXPECT_EQ(observer->Notifications(), (Texts{"slow", "other"}));
    EXPECT_EQ(observer->References(), 2U) << "held until the last call returns";
    const auto lock = Monitor::Enter();
    mayEnd = true;
    Monitor::Changed();
}

TEST_F(ConsoleOutput, LosesNoLineWhileItIsChanged) {
    constexpr int threadCount = 2;
    constexpr int linesPerThread = 500;
    std::atomic<int> printing = threadCount;
    const std::string printed = Printed([&] {
        const Threads threads(threadCount, [&] {
            for (int line = 0; line < linesPerThread; ++line) {
                Print("line\n");
            }
            --printing;
        });
        while (printing != 0) {
            ToObserver();
            ToStandardOutput();
        }
    });
    const auto onStandardOutput = static_cast<std::size_t>(std::count(printed.begin(), printed.end(), '\n'));
    EXPECT_EQ(onStandardOutput + observer->Notifications().size(), std::size_t{threadCount} * linesPerThread);
}

TEST_F(ConsoleOutput, IsOneOfTwoThatAreChosenAtOnce) {
    for (int round = 0; round < 300; ++round) {
        const std::string printed = Printed([&] {
            {
                const Threads first(1, [&] { ToObserver(); });
                const Threads second(1, [] { ToStandardOutput(); });
            }
            Print("x\n");
        });
        ASSERT_EQ(printed.size() / 2 + observer->TakeNotifications().size(), 1U) << "round " << round;
    }
}

}  // namespace
}  // namespace Morquil
