#include "tests/system/host/slot_walk.h"

#include <utility>

namespace Morquil::Testing {

SlotWalk::SlotWalk() : object(ConnectAsync(device.Address(), connection)) {
    EXPECT_TRUE(device.AwaitHost());
    watched = std::make_unique<WatchedDevice>(device, object);
}

SlotWalk::~SlotWalk() {
    watched.reset();
    Disconnect(object);
}

void SlotWalk::Walk(const WalkedInterface& walked) {
    walked_ = walked;
    feature_ = object.QueryInterface(walked.iid);
    ASSERT_TRUE(feature_);
    watched->Report("");
}

void SlotWalk::ExpectEverySlotUpTo(int last) const {
    for (int slot = 3; slot <= last; ++slot) {
        EXPECT_EQ(called_.count(slot), 1U) << "slot " << slot;
    }
}

std::string SlotWalk::Block(const std::string& lines) const {
    return std::string(walked_.block) + ":\n" + lines + "\n";
}

void SlotWalk::ExpectNotified(const std::string& lines) {
    EXPECT_EQ(watched->Report(Block(lines)), walked_.propertySet) << lines;
    ExpectNotNotified(lines);
}

void SlotWalk::ExpectNotNotified(const std::string& lines) {
    EXPECT_EQ(watched->Report(Block(lines)), "") << lines;
}

void SlotWalk::ReportAvailability(const std::string& lines) {
    const std::string block = std::string(walked_.block) + " AVAILABILITY:\n" + lines + "\n";
    EXPECT_EQ(watched->Report(block), walked_.notifiesAvailability ? walked_.propertySet : "") << lines;
}

// What a call has queued has been written once the connection has applied what the device sends after the call.
void SlotWalk::ExpectNothingSent() {
    watched->Report("");
    if (device.HasReceivedChange()) {
        ADD_FAILURE() << "sent: " << device.NextChange();
    }
}

void SlotWalk::SendsWord(int slot, const char* name, const std::string& wire, int bound) {
    Sends(slot, name, wire, bound - 1);
    Sends(slot, name, "", -1);
    for (const int tooLarge : {bound, bound + 1, INT_MAX}) {
        Refuses(slot, name, invalidArgument, tooLarge);
    }
}

void SlotWalk::SendsAnyWord(int slot, const char* name, const std::string& wire, int value, int words) {
    Sends(slot, name, wire, value);
    for (const int wordless : {words, 99, -1}) {
        Sends(slot, name, "", wordless);
    }
}

void SlotWalk::SendsFlag(int slot, const char* name, const std::string& key) {
    Sends(slot, name, key + ": false\n", 0);
    for (const int yes : {1, 5, -1, INT_MIN}) {
        Sends(slot, name, key + ": true\n", yes);
    }
}

void SlotWalk::GetsFlag(int slot, const char* name, const std::string& key) {
    Gets(slot, name, key + ": true\n", 1);
    SCOPED_TRACE(name);
    ExpectNotified(key + ": false\n");
    std::int32_t value = 2;
    EXPECT_EQ(Call(slot, &value), ok);
    EXPECT_EQ(value, 0);
}

void SlotWalk::GetsText(int slot, const char* name, const std::string& lines, const std::u16string& expected) {
    SCOPED_TRACE(name);
    HostText text;
    EXPECT_EQ(Call(slot, static_cast<char16_t**>(nullptr)), nullPointer);
    EXPECT_EQ(Call(slot, text.Out()), failed);
    EXPECT_EQ(text.Get(), nullptr);
    ExpectNotified(lines);
    EXPECT_EQ(Call(slot, static_cast<char16_t**>(nullptr)), nullPointer);
    EXPECT_EQ(Call(slot, text.Out()), ok);
    EXPECT_EQ(text.Text(), expected);
}

void SlotWalk::Offers(int slot, const char* name, const std::string& lines, int bound, const std::set<int>& offered,
                      Result answer) {
    SCOPED_TRACE(name);
    for (const bool reported : {false, true}) {
        for (int value = -1; value < bound; ++value) {
            std::int32_t isAvailable = 2;
            EXPECT_EQ(Call(slot, value, &isAvailable), answer) << value;
            EXPECT_EQ(isAvailable, reported && offered.count(value) != 0 ? 1 : 0) << value;
        }
        for (const int tooLarge : {bound, INT_MAX}) {
            std::int32_t isAvailable = 2;
            EXPECT_EQ(Call(slot, tooLarge, &isAvailable), invalidArgument) << tooLarge;
            EXPECT_EQ(isAvailable, 2);
            EXPECT_EQ(Call(slot, tooLarge, static_cast<std::int32_t*>(nullptr)), invalidArgument);
        }
        if (!reported) {
            ReportAvailability(lines);
        }
    }
}

void SlotWalk::OffersFlag(int slot, const char* name, const std::string& key) {
    SCOPED_TRACE(name);
    std::int32_t isAvailable = 2;
    EXPECT_EQ(Call(slot, static_cast<std::int32_t*>(nullptr)), nullPointer);
    EXPECT_EQ(Call(slot, &isAvailable), ok);
    EXPECT_EQ(isAvailable, 0);
    for (const int expected : {1, 0}) {
        ReportAvailability(key + (expected == 1 ? ": true\n" : ": false\n"));
        EXPECT_EQ(Call(slot, &isAvailable), ok);
        EXPECT_EQ(isAvailable, expected);
    }
}

}  // namespace Morquil::Testing
