#include <SQLiteCpp/Database.h>
#include <gmock/gmock.h>

#include "gateway/store/audit_chain.h"
#include "tests/unit/gateway/store/store_fixture.h"

namespace Morquil::Testing {
namespace {

using Gateway::Attempt;
using Gateway::ChainHash;
using Gateway::Verification;
using Gateway::VerifyDatabase;

class Audit : public StoreFixture {
protected:
    void AddTen() {
        Open();
        for (int i = 1; i <= 10; ++i) {
            store_->Add(AttemptOf("cam-1", i));
        }
        ASSERT_TRUE(Flush());
    }
    /// What the examination says after somebody has changed the file.
    std::string ProblemAfter(const std::string& statement) {
        store_.reset();
        SQLite::Database(path_, SQLite::OPEN_READWRITE).exec(statement);
        const Verification verification = VerifyDatabase(path_);
        EXPECT_EQ(verification.isIntact, verification.problem.empty());
        return verification.problem;
    }
};

TEST_F(Audit, GivesBackEveryFieldOfAnAttempt) {
    Open();
    Attempt attempt = AttemptOf("cam-1", 7);
    store_->Add(attempt);
    ASSERT_TRUE(Flush());
    attempt.id = 1;
    attempt.hash = Gateway::ToHex(ChainHash(attempt, Gateway::Hash{}));
    EXPECT_THAT(StoreFixture::Audit().rows, testing::ElementsAre(attempt));
}

TEST_F(Audit, SelectsByDevicePropertyAndTime) {
    AddTen();
    store_->Add(AttemptOf("cam-2", 11));
    ASSERT_TRUE(Flush());
    EXPECT_EQ(StoreFixture::Audit({.device = "cam-2"}).rows.size(), 1U);
    EXPECT_EQ(StoreFixture::Audit({.property = "proc-amp.gain", .from = At(5), .to = At(8)}).rows.size(), 3U);
    EXPECT_EQ(StoreFixture::Audit({.property = "output.mode"}).rows.size(), 0U);
    EXPECT_EQ(StoreFixture::Audit({.limit = 4}).rows.size(), 4U);
}

TEST_F(Audit, IsIntactAsWritten) {
    AddTen();
    const Verification verification = Verify();
    EXPECT_TRUE(verification.isIntact) << verification.problem;
    EXPECT_EQ(verification.rows, 10U);
    EXPECT_EQ(verification.head, StoreFixture::Audit({.limit = 1}).rows.at(0).hash);
    Reopen();
    store_->Add(AttemptOf("cam-1", 11));
    ASSERT_TRUE(Flush());
    EXPECT_TRUE(Verify().isIntact);
    EXPECT_EQ(Verify().rows, 11U);
}

TEST_F(Audit, IsIntactWhenEmpty) {
    Open();
    EXPECT_TRUE(Verify().isIntact);
}

TEST_F(Audit, ShowsWhichRowHasBeenChanged) {
    AddTen();
    EXPECT_EQ(ProblemAfter("UPDATE audit SET who = 'bert' WHERE id = 4"), "row 4 has been changed or moved");
}

TEST_F(Audit, ShowsAChangeOfAnyColumn) {
    AddTen();
    for (const char* change : {"time = time + 1", "who = who || ' '", "address = '::1'", "device = 'x'",
                               "property = 'x'", "value = '2'", "outcome = 'refused'", "status = 201", "request = ''",
                               "hash = zeroblob(32)", "hash = 'x'", "property = device, device = property"}) {
        store_.reset();
        SQLite::Database(path_, SQLite::OPEN_READWRITE).exec("CREATE TABLE kept AS SELECT * FROM audit");
        EXPECT_EQ(ProblemAfter(std::string("UPDATE audit SET ") + change + " WHERE id = 6"),
                  "row 6 has been changed or moved")
            << change;
        EXPECT_EQ(ProblemAfter("DELETE FROM audit; INSERT INTO audit SELECT * FROM kept; DROP TABLE kept"), "");
    }
}

TEST_F(Audit, ShowsWhichRowsHaveBeenRemoved) {
    AddTen();
    EXPECT_EQ(ProblemAfter("DELETE FROM audit WHERE id = 5"), "row 5 is missing");
    EXPECT_EQ(ProblemAfter("DELETE FROM audit WHERE id IN (6, 7)"), "rows 5 to 7 are missing");
    EXPECT_EQ(ProblemAfter("DELETE FROM audit WHERE id = 1"), "row 1 is missing");
}

TEST_F(Audit, ShowsThatTheLastRowsHaveBeenRemoved) {
    AddTen();
    EXPECT_EQ(ProblemAfter("DELETE FROM audit WHERE id > 8"), "rows 9 to 10 are missing");
}

TEST_F(Audit, ShowsARemovedRowWhoseNumberWasGivenToTheNext) {
    AddTen();
    EXPECT_EQ(ProblemAfter("DELETE FROM audit WHERE id = 5; UPDATE audit SET id = id - 1 WHERE id > 5"),
              "row 5 has been changed or moved");
}

TEST_F(Audit, ShowsRowsThatHaveChangedPlaces) {
    AddTen();
    EXPECT_EQ(ProblemAfter("UPDATE audit SET id = 100 WHERE id = 3; UPDATE audit SET id = 3 WHERE id = 8; "
                           "UPDATE audit SET id = 8 WHERE id = 100"),
              "row 3 has been changed or moved");
}

TEST_F(Audit, ShowsAnAddedRow) {
    AddTen();
    EXPECT_EQ(ProblemAfter("INSERT INTO audit SELECT 11, time, who, address, device, property, value, outcome, status, "
                           "request, hash FROM audit WHERE id = 10"),
              "row 11 has been changed or moved");
}

TEST_F(Audit, ShowsAChangedAnchor) {
    AddTen();
    EXPECT_EQ(ProblemAfter("UPDATE audit_anchors SET hash = zeroblob(32) WHERE place = 'last'"),
              "the anchor of the last row has been changed");
}

TEST_F(Audit, SaysThatThereIsNothingToExamine) {
    EXPECT_NE(VerifyDatabase(folder_.PathOf("none.db")).problem, "");
    EXPECT_FALSE(VerifyDatabase(folder_.PathOf("none.db")).isIntact);
}

TEST(AuditChain, NoTextPassesForAnother) {
    Attempt first = AttemptOf("cam-1", 1);
    Attempt second = first;
    first.who = "ab";
    first.address = "c";
    second.who = "a";
    second.address = "bc";
    EXPECT_NE(ChainHash(first, {}), ChainHash(second, {}));
}

}  // namespace
}  // namespace Morquil::Testing
