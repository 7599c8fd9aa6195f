#include <gmock/gmock.h>

#include <set>

#include "tests/unit/gateway/store/store_fixture.h"

namespace Morquil::Testing {
namespace {

using Gateway::Change;
using Gateway::HistoryPage;
using testing::ElementsAre;

class History : public StoreFixture {
protected:
    History() { Open(); }

    /// Changes of two devices and two properties, one a second.
    void AddTwenty() {
        for (int second = 0; second < 20; ++second) {
            store_->Add(ChangeOf(second % 2 == 0 ? "cam-1" : "cam-2", second % 4 < 2 ? "output.mode" : "proc-amp.gain",
                                 second));
        }
        ASSERT_TRUE(Flush());
    }
    std::vector<std::string> Values(Gateway::Query query) {
        std::vector<std::string> values;
        for (const Change& change : StoreFixture::History(std::move(query)).rows) {
            values.push_back(change.newValue);
        }
        return values;
    }
    /// Follows the pages to the end.
    std::vector<std::int64_t> AllIds(Gateway::Query query) {
        std::vector<std::int64_t> ids;
        do {
            const HistoryPage page = StoreFixture::History(query);
            EXPECT_EQ(page.problem, "");
            for (const Change& change : page.rows) {
                ids.push_back(change.id);
            }
            query.after = page.next;
        } while (!query.after.empty());
        return ids;
    }
};

TEST_F(History, GivesBackEveryFieldOfAChange) {
    Change change{.time = At(1) + std::chrono::milliseconds(234),
                  .device = "cam-1",
                  .property = "input.name",
                  .oldValue = "null",
                  .newValue = "\"caf\xC3\xA9 \\\"1\\\"\"",
                  .origin = "gateway",
                  .who = "anna"};
    store_->Add(change);
    ASSERT_TRUE(Flush());
    change.id = 1;
    EXPECT_THAT(StoreFixture::History().rows, ElementsAre(change));
}

TEST_F(History, SelectsByDevicePropertyAndTime) {
    AddTwenty();
    EXPECT_THAT(Values({.device = "cam-1", .property = "output.mode"}), ElementsAre("16", "12", "8", "4", "0"));
    EXPECT_THAT(Values({.device = "cam-2", .from = At(15)}), ElementsAre("19", "17", "15"));
    EXPECT_THAT(Values({.property = "proc-amp.gain", .to = At(6)}), ElementsAre("3", "2"));
    EXPECT_THAT(Values({.from = At(3), .to = At(6)}), ElementsAre("5", "4", "3"));
    EXPECT_THAT(Values({.device = "cam-9"}), ElementsAre());
}

TEST_F(History, PagesHoldEveryRowOnceWhateverTheirSize) {
    AddTwenty();
    for (const std::size_t limit : {1U, 3U, 7U, 20U, 100U}) {
        const std::vector<std::int64_t> ids = AllIds({.limit = limit});
        EXPECT_EQ(ids.size(), 20U) << limit;
        EXPECT_EQ(std::set<std::int64_t>(ids.begin(), ids.end()).size(), 20U) << limit;
    }
    EXPECT_EQ(StoreFixture::History({.limit = 20}).next, "");
}

TEST_F(History, PagesStayWhereTheyAreWhileRowsAreAdded) {
    AddTwenty();
    const HistoryPage first = StoreFixture::History({.limit = 5});
    store_->Add(ChangeOf("cam-1", "output.mode", 100));
    ASSERT_TRUE(Flush());
    EXPECT_THAT(Values({.limit = 3, .after = first.next}), ElementsAre("14", "13", "12"));
}

TEST_F(History, RowsOfTheSameTimeAreOrderedByTheirIds) {
    for (int i = 0; i < 6; ++i) {
        store_->Add(ChangeOf("cam-1", "output.mode", 1));
    }
    ASSERT_TRUE(Flush());
    EXPECT_THAT(AllIds({.limit = 2}), ElementsAre(6, 5, 4, 3, 2, 1));
}

TEST_F(History, IdsGrowThoughTheClockJumpsBack) {
    store_->Add(ChangeOf("cam-1", "output.mode", 1000));
    store_->Add(ChangeOf("cam-1", "output.mode", 10));
    store_->Add(ChangeOf("cam-1", "output.mode", 500));
    ASSERT_TRUE(Flush());
    EXPECT_THAT(AllIds({.limit = 1}), ElementsAre(1, 3, 2)) << "by time";
    Reopen();
    store_->Add(ChangeOf("cam-1", "output.mode", 1));
    ASSERT_TRUE(Flush());
    EXPECT_THAT(AllIds({}), ElementsAre(1, 3, 2, 4));
}

TEST_F(History, HidesWhatTheCallerMayNotSee) {
    AddTwenty();
    const auto allowed = [](std::string_view device, std::string_view property) {
        return device == "cam-2" && property == "output.mode";
    };
    EXPECT_THAT(Values({.limit = 3, .allowed = allowed}), ElementsAre("17", "13", "9"));
    EXPECT_EQ(AllIds({.limit = 2, .allowed = allowed}).size(), 5U);
}

TEST_F(History, APageThatHidesMuchIsShortButNotTheLast) {
    for (int i = 0; i < 15000; ++i) {
        store_->Add(ChangeOf("cam-1", i == 0 ? "output.mode" : "proc-amp.gain", i));
    }
    ASSERT_TRUE(Flush());
    const auto allowed = [](std::string_view, std::string_view property) { return property == "output.mode"; };
    const HistoryPage page = StoreFixture::History({.allowed = allowed});
    EXPECT_TRUE(page.rows.empty());
    EXPECT_NE(page.next, "");
    EXPECT_THAT(AllIds({.allowed = allowed}), ElementsAre(1));
}

TEST_F(History, RefusesACursorThatIsNotOne) {
    for (const char* after : {"x", "1", "1.", ".1", "1.2.3", "1.2x", "99999999999999999999.1", " 1.2"}) {
        EXPECT_EQ(StoreFixture::History({.after = after}).problem, "after is not the next of a page") << after;
    }
}

TEST_F(History, ARowArrivesWithoutAFlush) {
    store_->Add(ChangeOf("cam-1", "output.mode", 1));
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
    while (StoreFixture::History().rows.empty() && std::chrono::steady_clock::now() < end) {
    }
    EXPECT_EQ(StoreFixture::History().rows.size(), 1U);
}

TEST_F(History, WritesWhatIsPendingWhenItEnds) {
    for (int i = 0; i < 5000; ++i) {
        store_->Add(ChangeOf("cam-1", "output.mode", i));
    }
    Reopen();
    EXPECT_EQ(AllIds({.limit = 1000}).size(), 5000U);
}

}  // namespace
}  // namespace Morquil::Testing
