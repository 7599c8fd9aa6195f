#include "observers/observable_property_set.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/unit/device/recording_observers.h"

namespace Morquil {
namespace {

using Testing::Held;
using Testing::PropertyObserver;
using Notes = std::vector<std::string>;

TEST(ObservablePropertySet, PassesItsIdToEveryObserverInOrder) {
    Notes notes;
    const Held<PropertyObserver> first;
    const Held<PropertyObserver> second;
    first->name = "first";
    second->name = "second";
    first->sharedNotes = second->sharedNotes = &notes;
    CObservablePropertySet set(morquilPresetPropertySetId);
    EXPECT_EQ(set.PropertySet(), morquilPresetPropertySetId);
    EXPECT_EQ(set.AddObserver(first.Get()), S_OK);
    EXPECT_EQ(set.AddObserver(second.Get()), S_OK);
    set.NotifyObservers();
    EXPECT_EQ(notes, (Notes{"first prst", "second prst"}));
}

TEST(ObservablePropertySet, NotifiesAnObserverThatIsAddedTwiceOnce) {
    const Held<PropertyObserver> observer;
    CObservablePropertySet set(morquilVideoClipPropertySetId);
    EXPECT_EQ(set.AddObserver(observer.Get()), S_OK);
    EXPECT_EQ(set.AddObserver(observer.Get()), S_FALSE);
    set.NotifyObservers();
    EXPECT_EQ(observer->Notifications(), Notes{"vidc"});
}

TEST(ObservablePropertySet, NotifiesNothingWithoutObservers) {
    const Held<PropertyObserver> observer;
    CObservablePropertySet set(morquilVideoClipPropertySetId);
    set.NotifyObservers();
    EXPECT_EQ(set.RemoveObserver(observer.Get()), S_FALSE);
    set.AddObserver(observer.Get());
    EXPECT_EQ(set.RemoveObserver(observer.Get()), S_OK);
    set.NotifyObservers();
    EXPECT_EQ(observer->Notifications(), Notes{});
}

TEST(ObservablePropertySet, ReleasesEachObserverOncePerAdditionAtItsEnd) {
    const Held<PropertyObserver> observer;
    {
        CObservablePropertySet one(morquilVideoClipPropertySetId);
        CObservablePropertySet other(morquilPresetPropertySetId);
        one.AddObserver(observer.Get());
        other.AddObserver(observer.Get());
        EXPECT_EQ(observer->References(), 3U);
    }
    EXPECT_EQ(observer->References(), 1U);
}

TEST(ObservablePropertySet, NotifiesNoObserverOnceItIsSilenced) {
    const Held<PropertyObserver> first;
    const Held<PropertyObserver> second;
    CObservablePropertySet set(morquilVideoClipPropertySetId);
    first->onCall = [&] { set.Silence(); };
    set.AddObserver(first.Get());
    set.AddObserver(second.Get());
    set.NotifyObservers();
    set.NotifyObservers();
    EXPECT_EQ(first->Notifications().size(), 1U);
    EXPECT_EQ(second->Notifications().size(), 0U);
    EXPECT_EQ(set.RemoveObserver(second.Get()), S_OK) << "it still holds its observers";
}

}  // namespace
}  // namespace Morquil
