#include "gateway/store/purge.h"

#include <SQLiteCpp/Transaction.h>
#include <gmock/gmock.h>

#include "gateway/store/audit_table.h"
#include "gateway/store/history_table.h"
#include "tests/unit/gateway/store/store_fixture.h"

namespace Morquil::Testing {
namespace {

using Gateway::Caps;
using namespace std::chrono_literals;

constexpr int day = 86400;

class Purging : public testing::Test {
protected:
    void Add(int rows, int secondsApart) {
        SQLite::Transaction transaction(*database_);
        Gateway::HistoryWriter history(*database_);
        Gateway::AuditWriter audit(*database_);
        for (int i = 0; i < rows; ++i) {
            history.Add(ChangeOf("cam-" + std::to_string(i % 7), "output.mode", i * secondsApart));
            audit.Add(AttemptOf("cam-1", i * secondsApart));
        }
        audit.Finish();
        transaction.commit();
    }
    std::int64_t Count(const std::string& table) {
        return database_->execAndGet("SELECT count(*) FROM " + table).getInt64();
    }
    /// Returns: the number of slices.
    int PurgeAll(Caps caps, Gateway::Time now) {
        Gateway::Purge purge(caps);
        int slices = 0;
        while (purge.Step(*database_, now)) {
            ++slices;
            EXPECT_TRUE(Gateway::VerifyAudit(*database_, false).isIntact);
        }
        return slices;
    }

    TemporaryFolder folder_;
    Gateway::Connection database_ = Gateway::OpenForWriting(folder_.PathOf("gateway.db"));
};

TEST_F(Purging, RemovesWhatIsTooOldInSlices) {
    Add(1000, day / 10);  // a hundred days
    const int slices = PurgeAll({.historyAge = 30 * 24h, .auditAge = 60 * 24h}, At(100 * day));
    EXPECT_EQ(Count("history"), 300);
    EXPECT_EQ(Count("audit"), 600);
    EXPECT_GT(slices, 3);
}

TEST_F(Purging, LeavesAnAnchorFromWhichTheChainGoesOn) {
    Add(100, day);
    PurgeAll({.historyAge = 24h, .auditAge = 10 * 24h}, At(100 * day));
    const Gateway::Verification verification = Gateway::VerifyAudit(*database_, false);
    EXPECT_TRUE(verification.isIntact) << verification.problem;
    EXPECT_EQ(verification.first, 91);
    EXPECT_EQ(verification.rows, 10U);
    Add(1, day);
    EXPECT_EQ(Gateway::VerifyAudit(*database_, false).last, 101);
    EXPECT_TRUE(Gateway::VerifyAudit(*database_, false).isIntact);
}

TEST_F(Purging, OfAllRowsKeepsTheNumbers) {
    Add(10, 1);
    PurgeAll({.historyAge = 1h, .auditAge = 1h}, At(day));
    EXPECT_EQ(Count("history") + Count("audit"), 0);
    EXPECT_TRUE(Gateway::VerifyAudit(*database_, false).isIntact);
    Add(1, 1);
    EXPECT_EQ(database_->execAndGet("SELECT id FROM history").getInt(), 11);
    EXPECT_EQ(database_->execAndGet("SELECT id FROM audit").getInt(), 11);
}

TEST_F(Purging, ShrinksTheFileBelowItsCapAndKeepsTheNewest) {
    Add(5000, 1);
    const std::int64_t cap = Gateway::FileBytes(*database_) * 4 / 5;
    PurgeAll({.bytes = cap}, At(0));
    EXPECT_LE(Gateway::FileBytes(*database_), cap);
    EXPECT_GT(Count("history"), 0);
    EXPECT_EQ(database_->execAndGet("SELECT max(id) FROM history").getInt(), 5000);
    EXPECT_EQ(Count("audit"), 5000) << "changes are removed first";
}

TEST_F(Purging, RemovesAttemptsWhenThereAreNoChangesLeft) {
    Add(5000, 1);
    PurgeAll({.bytes = 100000}, At(0));
    EXPECT_EQ(Count("history"), 0);
    EXPECT_LT(Count("audit"), 1000);
    EXPECT_LE(Gateway::UsedBytes(*database_), 100000);
}

TEST_F(Purging, DoesNothingBelowTheCaps) {
    Add(100, 1);
    EXPECT_EQ(PurgeAll({}, At(200)), 0);
    EXPECT_EQ(Count("history"), 100);
}

TEST_F(Purging, DoesNotMakeAHoleWhereTheClockJumped) {
    Gateway::AuditWriter audit(*database_);
    for (const int second : {0, 50 * day, 1, 2}) {
        audit.Add(AttemptOf("cam-1", second));
    }
    audit.Finish();
    PurgeAll({.auditAge = 24h}, At(10 * day));
    EXPECT_EQ(Count("audit"), 3);
    EXPECT_TRUE(Gateway::VerifyAudit(*database_, false).isIntact);
}

class PurgingStore : public StoreFixture {};

TEST_F(PurgingStore, PurgesByItself) {
    Gateway::StoreSettings settings = Settings();
    settings.caps.historyAge = 1h;
    settings.now = [] { return At(day); };
    Open(settings);
    store_->Add(ChangeOf("cam-1", "output.mode", 1));
    store_->Add(ChangeOf("cam-1", "output.mode", day));
    ASSERT_TRUE(Flush());
    const auto end = std::chrono::steady_clock::now() + 60s;
    while (History().rows.size() > 1 && std::chrono::steady_clock::now() < end) {
    }
    EXPECT_EQ(History().rows.size(), 1U);
}

}  // namespace
}  // namespace Morquil::Testing
