#include "observers/observer_list.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <string>
#include <vector>

#include "tests/kit/monitor.h"
#include "tests/kit/threads.h"
#include "tests/kit/watchdog.h"
#include "tests/unit/device/recording_observers.h"

namespace Morquil {
namespace {

using Morquil::Testing::Threads;
using Testing::ConnectionObserver;
using Testing::Held;
using Testing::Monitor;
using Testing::Watchdog;
using List = ObserverList<IMorquilConnectionObserver>;
using Notes = std::vector<std::string>;

class ObserverListTest : public testing::Test {
protected:
    ObserverListTest() {
        first->name = "first";
        second->name = "second";
        third->name = "third";
        for (ConnectionObserver* const observer : {first.Get(), second.Get(), third.Get()}) {
            observer->sharedNotes = &notes;
        }
    }

    void AddAll() {
        EXPECT_EQ(list.Add(first.Get()), S_OK);
        EXPECT_EQ(list.Add(second.Get()), S_OK);
        EXPECT_EQ(list.Add(third.Get()), S_OK);
    }
    void CallAll() {
        List::Round round(list);
        round.CallEach([](IMorquilConnectionObserver& observer) { observer.Connected(); });
    }

    Watchdog watchdog;
    Notes notes;
    Held<ConnectionObserver> first;
    Held<ConnectionObserver> second;
    Held<ConnectionObserver> third;
    List list;
};

TEST_F(ObserverListTest, CallsNothingWhenItIsEmpty) {
    CallAll();
    EXPECT_EQ(notes, Notes{});
}

TEST_F(ObserverListTest, CallsInTheOrderOfAddition) {
    AddAll();
    CallAll();
    EXPECT_EQ(notes, (Notes{"first connected", "second connected", "third connected"}));
}

TEST_F(ObserverListTest, AddsAnObserverOnce) {
    EXPECT_EQ(list.Add(first.Get()), S_OK);
    EXPECT_EQ(list.Add(first.Get()), S_FALSE);
    EXPECT_EQ(first->References(), 2U);
    EXPECT_EQ(first->ReferencesTaken(), 1U);
    CallAll();
    EXPECT_EQ(notes, Notes{"first connected"});
}

TEST_F(ObserverListTest, RefusesNull) {
    EXPECT_EQ(list.Add(nullptr), E_POINTER);
    EXPECT_EQ(list.Remove(nullptr), S_FALSE);
}

TEST_F(ObserverListTest, RemovesAnObserverOnce) {
    EXPECT_EQ(list.Remove(first.Get()), S_FALSE);
    AddAll();
    EXPECT_EQ(list.Remove(second.Get()), S_OK);
    EXPECT_EQ(second->References(), 1U);
    EXPECT_EQ(list.Remove(second.Get()), S_FALSE);
    EXPECT_EQ(second->References(), 1U);
    CallAll();
    EXPECT_EQ(notes, (Notes{"first connected", "third connected"}));
}

TEST_F(ObserverListTest, PutsAnObserverThatComesBackAtTheEnd) {
    AddAll();
    list.Remove(first.Get());
    list.Add(first.Get());
    CallAll();
    EXPECT_EQ(notes, (Notes{"second connected", "third connected", "first connected"}));
}

TEST_F(ObserverListTest, ReleasesEveryObserverOnceAtItsEnd) {
    {
        List shortLived;
        shortLived.Add(first.Get());
        shortLived.Add(second.Get());
        shortLived.Remove(second.Get());
        EXPECT_EQ(first->References(), 2U);
    }
    EXPECT_EQ(first->References(), 1U);
    EXPECT_EQ(second->References(), 1U);
}

TEST_F(ObserverListTest, CallsNoObserverThatWasRemovedInTheRound) {
    first->onCall = [&] { EXPECT_EQ(list.Remove(second.Get()), S_OK); };
    AddAll();
    CallAll();
    EXPECT_EQ(notes, (Notes{"first connected", "third connected"}));
    EXPECT_EQ(second->References(), 1U);
}

TEST_F(ObserverListTest, CallsAnObserverThatWasAppendedInTheRound) {
    first->onCall = [&] { EXPECT_EQ(list.Add(third.Get()), first->Notifications().size() == 1 ? S_OK : S_FALSE); };
    list.Add(first.Get());
    CallAll();
    EXPECT_EQ(notes, (Notes{"first connected", "third connected"}));
}

TEST_F(ObserverListTest, CallsAnObserverThatComesBackInItsOwnCallInTheNextRoundOnly) {
    first->onCall = [&] {
        ASSERT_LT(first->Notifications().size(), 5U) << "it is called endlessly";
        EXPECT_EQ(list.Remove(first.Get()), S_OK);
        EXPECT_EQ(list.Add(first.Get()), S_OK);
    };
    AddAll();
    CallAll();
    EXPECT_EQ(notes, (Notes{"first connected", "second connected", "third connected"}));
    EXPECT_EQ(first->References(), 2U);
    notes.clear();
    CallAll();
    EXPECT_EQ(notes, (Notes{"second connected", "third connected", "first connected"}));
}

TEST_F(ObserverListTest, CallsObserversThatReplaceEachOtherOnceInARound) {
    const auto replace = [this](const Held<ConnectionObserver>& one) {
        ASSERT_LT(notes.size(), 10U) << "they are called endlessly";
        for (int times = 0; times < 3; ++times) {
            EXPECT_EQ(list.Remove(one.Get()), S_OK);
            EXPECT_EQ(list.Add(one.Get()), S_OK);
        }
    };
    first->onCall = [&] { replace(second); };
    second->onCall = [&] { replace(first); };
    third->onCall = [&] { replace(first); };
    AddAll();
    CallAll();
    EXPECT_EQ(notes, (Notes{"first connected", "third connected", "second connected"}));
    EXPECT_EQ(first->References(), 2U);
    EXPECT_EQ(second->References(), 2U);
}

TEST_F(ObserverListTest, LetsAnObserverRemoveItself) {
    ULONG referencesInside = 0;
    second->onCall = [&] {
        EXPECT_EQ(list.Remove(second.Get()), S_OK);
        EXPECT_EQ(list.Remove(second.Get()), S_FALSE);
        referencesInside = second->References();
    };
    AddAll();
    CallAll();
    EXPECT_EQ(notes, (Notes{"first connected", "second connected", "third connected"}));
    EXPECT_EQ(referencesInside, 2U) << "it was released inside its own call";
    EXPECT_EQ(second->References(), 1U);
    CallAll();
    EXPECT_EQ(second->Notifications().size(), 1U);
}

TEST_F(ObserverListTest, LetsAnObserverRemoveAll) {
    second->onCall = [&] {
        EXPECT_EQ(list.Remove(first.Get()), S_OK);
        EXPECT_EQ(list.Remove(second.Get()), S_OK);
        EXPECT_EQ(list.Remove(third.Get()), S_OK);
    };
    AddAll();
    CallAll();
    CallAll();
    EXPECT_EQ(notes, (Notes{"first connected", "second connected"}));
    for (ConnectionObserver* const observer : {first.Get(), second.Get(), third.Get()}) {
        EXPECT_EQ(observer->References(), 1U);
    }
}

TEST_F(ObserverListTest, EndsACancelledRoundAfterTheCallItIsIn) {
    second->onCall = [&] { list.CancelRounds(); };
    AddAll();
    CallAll();
    EXPECT_EQ(notes, (Notes{"first connected", "second connected"}));
    CallAll();
    EXPECT_EQ(notes.size(), 4U) << "the next round is another one";
}

TEST_F(ObserverListTest, CallsNoObserverOnceItIsSilenced) {
    second->onCall = [&] { list.Silence(); };
    AddAll();
    CallAll();
    CallAll();
    EXPECT_EQ(notes, (Notes{"first connected", "second connected"}));
}

TEST_F(ObserverListTest, CancelsARoundInWhichAnotherIsBegun) {
    first->onCall = [&] {
        if (first->Notifications().size() == 1) {
            CallAll();
        }
    };
    AddAll();
    CallAll();
    EXPECT_EQ(notes, (Notes{"first connected", "first connected", "second connected", "third connected"}));
}

TEST_F(ObserverListTest, ReleasesAnObserverThatWasRemovedInAnInnerRoundAfterTheOuterCall) {
    ULONG afterInner = 0;
    first->onCall = [&] {
        if (first->Notifications().size() == 1) {
            CallAll();
            afterInner = first->References();
        } else {
            EXPECT_EQ(list.Remove(first.Get()), S_OK);
        }
    };
    list.Add(first.Get());
    CallAll();
    EXPECT_EQ(afterInner, 2U) << "the outer call still runs";
    EXPECT_EQ(first->References(), 1U);
}

class ChangeFromAnotherThread : public ObserverListTest,
                                public testing::WithParamInterface<HRESULT (List::*)(IMorquilConnectionObserver*)> {};

TEST_P(ChangeFromAnotherThread, WaitsForTheEndOfTheRound) {
    std::atomic<bool> begun = false;
    std::atomic<bool> callIsOver = false;
    list.Add(first.Get());
    if (GetParam() == &List::Remove) {
        list.Add(third.Get());
    }
    first->onCall = [&] {
        EXPECT_TRUE(Monitor::Await([&] { return begun.load(); }));
        callIsOver = true;
    };
    const Threads calling(1, [&] { CallAll(); });
    ASSERT_TRUE(first->AwaitNotified(1));
    {
        const auto lock = Monitor::Enter();
        begun = true;
        Monitor::Changed();
    }
    EXPECT_EQ((list.*GetParam())(third.Get()), S_OK);
    EXPECT_TRUE(callIsOver) << "the list changed under a round";
}

INSTANTIATE_TEST_SUITE_P(ObserverList, ChangeFromAnotherThread, testing::Values(&List::Add, &List::Remove));

TEST_F(ObserverListTest, SurvivesAFloodOfRoundsAndChanges) {
    constexpr int repetitions = 500;
    list.Add(first.Get());
    {
        std::atomic<int> thread = 0;
        const Threads working(4, [&] {
            ConnectionObserver* const own = thread++ % 2 == 0 ? second.Get() : third.Get();
            for (int count = 0; count < repetitions; ++count) {
                CallAll();
                list.Add(own);
                list.Remove(own);
            }
        });
    }
    EXPECT_EQ(first->Notifications().size(), 4U * repetitions);
    list.Remove(second.Get());
    list.Remove(third.Get());
    EXPECT_EQ(first->References(), 2U);
    EXPECT_EQ(second->References(), 1U);
    EXPECT_EQ(third->References(), 1U);
}

}  // namespace
}  // namespace Morquil
