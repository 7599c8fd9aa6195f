// However much changes, the backlog of a watch stays small.
#include "command/changes/change_log.h"

#include <gtest/gtest.h>

#include "command/changes/watch_feed.h"
#include "command/output/rendering.h"

namespace Morquil::Testing {
namespace {

using Command::ChangeLog;
using Command::FindProperty;
using Command::Value;
using Command::ValueChange;
using Command::WallClock;

Value Number(std::int64_t number) {
    return number;
}

TEST(ChangeLog, KeepsTheFirstValueAsItIs) {
    ChangeLog log;
    log.Note(FindProperty("proc-amp.gain"), Number(5), {});
    EXPECT_TRUE(log.IsEmpty());
    log.Note(FindProperty("proc-amp.gain"), Number(5), {});
    EXPECT_TRUE(log.Take().empty());
}

TEST(ChangeLog, KeepsTheLatestValueOfAFloodAndCountsTheOthers) {
    ChangeLog log;
    for (std::int64_t value = 0; value <= 1000; ++value) {
        log.Note(FindProperty("proc-amp.gain"), Number(value), WallClock::time_point(std::chrono::seconds(value)));
    }
    const std::vector<ValueChange> changes = log.Take();
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0].before, Number(0));
    EXPECT_EQ(changes[0].now, Number(1000));
    EXPECT_EQ(changes[0].skipped, 999u);
    EXPECT_EQ(changes[0].time, WallClock::time_point(std::chrono::seconds(1000)));
    EXPECT_TRUE(log.IsEmpty());
}

TEST(ChangeLog, ReportsAValueThatWasThereForAMomentOnly) {
    ChangeLog log;
    for (const std::int64_t value : {0, 7, 0}) {
        log.Note(FindProperty("proc-amp.gain"), Number(value), {});
    }
    const std::vector<ValueChange> changes = log.Take();
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0].before, changes[0].now);
    EXPECT_EQ(changes[0].skipped, 1u);
}

TEST(ChangeLog, ReturnsChangesInTheOrderOfTheirTimes) {
    ChangeLog log;
    const auto note = [&log](const char* name, std::int64_t value) {
        log.Note(FindProperty(name), Number(value), WallClock::time_point(std::chrono::seconds(value)));
    };
    for (const char* const name : {"proc-amp.hue", "proc-amp.gain"}) {
        note(name, 0);
    }
    note("proc-amp.hue", 1);
    note("proc-amp.gain", 2);
    note("proc-amp.hue", 3);
    const std::vector<ValueChange> changes = log.Take();
    ASSERT_EQ(changes.size(), 2u);
    EXPECT_EQ(changes[0].property->name, "proc-amp.gain");
    EXPECT_EQ(changes[1].property->name, "proc-amp.hue");
}

TEST(Changes, SayHowManyValuesWereSkipped) {
    ValueChange change{&FindProperty("proc-amp.gain"), Number(0), Number(9), {}, 0};
    EXPECT_EQ(ChangeAsRow(change).back().text, "");
    EXPECT_EQ(ChangeAsJson(change).at("skipped"), 0);
    change.skipped = 1;
    EXPECT_EQ(ChangeAsRow(change).back().text, "(1 value skipped)");
    change.skipped = 8;
    EXPECT_EQ(ChangeAsRow(change).back().text, "(8 values skipped)");
    EXPECT_EQ(ChangeAsJson(change).at("skipped"), 8);
}

TEST(WatchFeed, DropsTheOldestEventsAndCountsThem) {
    constexpr std::size_t dropped = 100;
    Command::WatchFeed feed;
    for (std::size_t added = 0; added < Command::WatchFeed::mostEvents + dropped; ++added) {
        feed.Add({.kind = Command::EventKind::Lost});
    }
    std::size_t events = 0;
    std::size_t skipped = 0;
    for (Command::News news = feed.Take(); news.event; news = feed.Take()) {
        ++events;
        skipped += news.event->skipped;
    }
    EXPECT_EQ(events, Command::WatchFeed::mostEvents);
    EXPECT_EQ(skipped, dropped);
}

}  // namespace
}  // namespace Morquil::Testing
