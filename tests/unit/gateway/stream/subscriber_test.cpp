#include "gateway/stream/subscriber.h"

#include <gtest/gtest.h>

namespace Morquil::Gateway {
namespace {

SharedText Text(const std::string& name, std::size_t padding = 0) {
    return std::make_shared<const EventText>(name, Json{{"pad", std::string(padding, 'x')}}, "b-1");
}

class SubscriberTest : public testing::Test {
protected:
    void Push(const std::string& name, const std::string& device, std::size_t padding = 0) {
        Event event;
        event.device = device;
        subscriber.Push(event, Text(name, padding));
    }
    /// The names of what is taken; a point after one without an id.
    std::string Take() {
        std::string names;
        for (const StreamPiece& piece :
             subscriber.Take([](const std::string&device,
                                bool) { return device == "gone" ? nullptr : Text("snapshot-" + device, 100); },
                             [](std::size_t missed) { return Text("gap-" + std::to_string(missed)); })) {
            const std::string_view text = piece.text->WithId();
            names += std::string(text.substr(7, text.find('\n') - 7)) + (piece.hasId ? " " : ". ");
        }
        return names;
    }

    Subscriber subscriber{View(), "", [] {}};
};

TEST_F(SubscriberTest, GetsEventsInTheirOrder) {
    Push("one", "a");
    Push("two", "b");
    EXPECT_EQ(Take(), "one two ");
    EXPECT_FALSE(subscriber.HasNews());
}

TEST_F(SubscriberTest, GivesNoIdBeforeTheLastSnapshot) {
    subscriber.Owe("a");
    subscriber.Owe("b");
    Push("change", "c");
    EXPECT_EQ(Take(), "change. snapshot-a. snapshot-b ");
    Push("later", "c");
    EXPECT_EQ(Take(), "later ");
}

TEST_F(SubscriberTest, LeavesOutADeviceThatIsGone) {
    subscriber.Owe("gone");
    EXPECT_EQ(Take(), "");
    EXPECT_FALSE(subscriber.HasNews());
}

TEST_F(SubscriberTest, HoldsABoundedAmountAndThenOwesTheLatestValues) {
    for (int event = 0; event < 1'000; ++event) {
        Push("change", event % 2 == 0 ? "a" : "b", 1'000);
        EXPECT_LE(subscriber.QueuedBytes(), Subscriber::mostQueued);
    }
    const std::string taken = Take();
    EXPECT_TRUE(taken.starts_with("gap-")) << taken;
    EXPECT_TRUE(subscriber.Owes("a") || taken.find("snapshot-a") != std::string::npos) << taken;
    std::string all = taken;
    while (subscriber.HasNews()) {
        all += Take();
    }
    EXPECT_NE(all.find("snapshot-a"), std::string::npos);
    EXPECT_NE(all.find("snapshot-b"), std::string::npos);
    EXPECT_GT(subscriber.Missed(), 0U);
}

TEST_F(SubscriberTest, TakesALimitedAmountAtOnce) {
    for (int event = 0; event < 40; ++event) {
        Push("change", "a", 1'000);
    }
    std::size_t size = 0;
    for (const StreamPiece& piece : subscriber.Take([](const std::string&, bool) { return SharedText(); },
                                                    [](std::size_t) { return SharedText(); })) {
        size += piece.text->WithId().size();
    }
    EXPECT_LE(size, Subscriber::mostAtOnce + 1'100);
    EXPECT_TRUE(subscriber.HasNews());
}

TEST_F(SubscriberTest, EndsAtOnceWhateverIsPending) {
    Push("change", "a");
    subscriber.Owe("b");
    subscriber.End(Text("end"));
    EXPECT_EQ(Take(), "end. ");
    EXPECT_TRUE(subscriber.HasEnded());
    Push("change", "a");
    EXPECT_EQ(Take(), "");
}

TEST_F(SubscriberTest, GetsHeartbeatsOnlyWhileNothingElseIsPending) {
    subscriber.PushHeartbeat(Text("heartbeat"));
    subscriber.PushHeartbeat(Text("heartbeat"));
    EXPECT_EQ(Take(), "heartbeat ");
}

TEST(EventText, LeavesOutItsId) {
    const EventText text("change", Json{{"a", 1}}, "b-7");
    EXPECT_EQ(text.WithId(), "event: change\ndata: {\"a\":1}\nid: b-7\n\n");
    EXPECT_EQ(std::string(text.WithoutId()) + "\n", "event: change\ndata: {\"a\":1}\n\n");
    EXPECT_EQ(text.Data(), "{\"a\":1}");
}

TEST(EventText, ReplacesBytesThatAreNoText) {
    const EventText text("change", Json{{"a", "x\xff\n"}}, {});
    EXPECT_EQ(text.Data(), "{\"a\":\"x\xEF\xBF\xBD\\n\"}");
}

}  // namespace
}  // namespace Morquil::Gateway
