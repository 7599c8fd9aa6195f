#include <SQLiteCpp/Database.h>
#include <gmock/gmock.h>

#include <array>

#include "gateway/store/database.h"
#include "tests/unit/gateway/store/store_fixture.h"

namespace Morquil::Testing {
namespace {

using Gateway::Migrate;
using Gateway::StoreState;

constexpr const char* first = "CREATE TABLE t(a); INSERT INTO t VALUES (1)";
constexpr const char* second = "ALTER TABLE t ADD COLUMN b; UPDATE t SET b = a + 1";
constexpr const char* broken = "UPDATE t SET a = 7; UPDATE t SET nothing = 1";

class Migration : public testing::Test {
protected:
    std::int64_t Version() { return database_.execAndGet("PRAGMA user_version").getInt64(); }

    SQLite::Database database_{":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};
};

TEST_F(Migration, RunsOnlyWhatTheDatabaseLacks) {
    Migrate(database_, std::array{first});
    EXPECT_EQ(Version(), 1);
    Migrate(database_, std::array{first, second});
    EXPECT_EQ(Version(), 2);
    EXPECT_EQ(database_.execAndGet("SELECT b FROM t").getInt(), 2);
    Migrate(database_, std::array{first, second});
    EXPECT_EQ(database_.execAndGet("SELECT count(*) FROM t").getInt(), 1);
}

TEST_F(Migration, ThatFailsChangesNothing) {
    Migrate(database_, std::array{first});
    EXPECT_THROW(Migrate(database_, std::array{first, broken}), SQLite::Exception);
    EXPECT_EQ(Version(), 1);
    EXPECT_EQ(database_.execAndGet("SELECT a FROM t").getInt(), 1);
}

TEST_F(Migration, RefusesADatabaseOfANewerProgram) {
    Migrate(database_, std::array{first, second});
    EXPECT_THROW(Migrate(database_, std::array{first}), SQLite::Exception);
}

class NewerStore : public StoreFixture {};

TEST_F(NewerStore, IsLeftAsItIs) {
    Open();
    store_->Put("users", "anna", "1");
    store_.reset();
    SQLite::Database(path_, SQLite::OPEN_READWRITE).exec("PRAGMA user_version = 99");
    Open();
    EXPECT_EQ(store_->Condition().state, StoreState::Unavailable);
    EXPECT_THAT(store_->Condition().sentence, testing::HasSubstr("newer version"));
}

}  // namespace
}  // namespace Morquil::Testing
