#pragma once

#include <gtest/gtest.h>

#include <climits>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <set>
#include <string>

#include "tests/kit/scripted_device.h"
#include "tests/system/host/host.h"
#include "tests/system/host/watched_device.h"

namespace Morquil::Testing {

/// How an interface relates to its device.
struct WalkedInterface {
    const char* iid;
    /// Its block, of which nothing is known yet.
    const char* block;
    /// The property set that is notified of its changes, and of no others.
    const char* propertySet;
    /// Whether observers are notified of the block's availability.
    bool notifiesAvailability = false;
};

/// Calls the methods of one interface by their slots, while the test plays the device. Each of the calls below tests
/// one method with everything that it promises; wires are the lines of the block as they are sent and received.
class SlotWalk : public testing::Test {
protected:
    SlotWalk();
    ~SlotWalk() override;

    /// Chooses the interface; before anything else.
    void Walk(const WalkedInterface& walked);
    /// All slots from the first of the interface's own to `last` have been called.
    void ExpectEverySlotUpTo(int last) const;

    // Setters

    /// Sends just `wire`.
    template <class... Arguments>
    void Sends(int slot, const char* name, const std::string& wire, Arguments... arguments) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Call(slot, arguments...), ok);
        EXPECT_EQ(device.NextChange(), Block(wire));
    }
    /// Answers `result` and sends nothing.
    template <class... Arguments>
    void Refuses(int slot, const char* name, Result result, Arguments... arguments) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Call(slot, arguments...), result);
        ExpectNothingSent();
    }
    /// The last word of an enumeration. From `bound` on values are refused, negative ones are sent without a line.
    void SendsWord(int slot, const char* name, const std::string& wire, int bound);
    /// The same without a check: a value outside the enumeration, which has `words`, is sent without a line.
    void SendsAnyWord(int slot, const char* name, const std::string& wire, int value, int words);
    /// Anything but 0 is true.
    void SendsFlag(int slot, const char* name, const std::string& key);

    // Getters

    /// The value of `lines`; E_FAIL before they have arrived, E_POINTER for null. Their arrival is notified once, so
    /// they must not be what a setter has sent before.
    template <class Value>
    void Gets(int slot, const char* name, const std::string& lines, Value expected) {
        SCOPED_TRACE(name);
        const Value untouched = expected == Value{} ? Value{1} : Value{};
        Value value = untouched;
        EXPECT_EQ(Call(slot, static_cast<Value*>(nullptr)), nullPointer);
        EXPECT_EQ(Call(slot, &value), failed);
        EXPECT_EQ(value, untouched);
        ExpectNotified(lines);
        EXPECT_EQ(Call(slot, static_cast<Value*>(nullptr)), nullPointer);
        EXPECT_EQ(Call(slot, &value), ok);
        EXPECT_EQ(value, expected);
    }
    void GetsFlag(int slot, const char* name, const std::string& key);
    void GetsText(int slot, const char* name, const std::string& lines, const std::u16string& expected);

    // Availability

    template <class Value>
    void GetsRange(int slot, const char* name, const std::string& lines, Value minimum, Value maximum) {
        GetsRangeOf(slot, name, lines, minimum, maximum);
    }
    /// One range of many, which `which` picks.
    template <class Value, class... Which>
    void GetsRangeOf(int slot, const char* name, const std::string& lines, Value minimum, Value maximum,
                     Which... which) {
        SCOPED_TRACE(name);
        Value min = maximum;
        Value max = minimum;
        const auto none = static_cast<Value*>(nullptr);
        for (const bool reported : {false, true}) {
            EXPECT_EQ(Call(slot, which..., none, &max), nullPointer);
            EXPECT_EQ(Call(slot, which..., &min, none), nullPointer);
            EXPECT_EQ(Call(slot, which..., none, none), nullPointer);
            EXPECT_EQ(Call(slot, which..., &min, &max), reported ? ok : failed);
            EXPECT_EQ(min, reported ? minimum : maximum);
            EXPECT_EQ(max, reported ? maximum : minimum);
            if (!reported) {
                ReportAvailability(lines);
            }
        }
    }
    /// Nothing is available before `lines` have arrived, then only `offered`. From `bound` on values are refused.
    void Offers(int slot, const char* name, const std::string& lines, int bound, const std::set<int>& offered,
                Result answer = ok);
    /// A flag of the availability, which reads as 0 before it has arrived.
    void OffersFlag(int slot, const char* name, const std::string& key);

    // What the calls above consist of

    template <class... Arguments>
    Result Call(int slot, Arguments... arguments) {
        called_.insert(slot);
        return feature_.Call(slot, arguments...);
    }
    std::string Block(const std::string& lines) const;
    /// The device reports `lines`; the observers of this interface's property set are notified, and no others.
    void ExpectNotified(const std::string& lines);
    void ExpectNotNotified(const std::string& lines);
    void ReportAvailability(const std::string& lines);
    void ExpectNothingSent();

    ScriptedDevice device;
    ConnectionObserver connection;
    RawObject object;
    std::unique_ptr<WatchedDevice> watched;

private:
    WalkedInterface walked_{};
    RawObject feature_;
    std::set<int> called_;
};

}  // namespace Morquil::Testing
