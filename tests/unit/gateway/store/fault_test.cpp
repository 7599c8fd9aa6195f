// What happens when the file cannot be written.
#include <SQLiteCpp/Database.h>
#include <gmock/gmock.h>

#include <fstream>

#include "tests/unit/gateway/store/faulty_disk.h"
#include "tests/unit/gateway/store/store_fixture.h"

namespace Morquil::Testing {
namespace {

using Fault = FaultyDisk::Fault;
using Gateway::StoreState;
using testing::HasSubstr;

class FaultyStore : public StoreFixture {
protected:
    ~FaultyStore() override { store_.reset(); }  // before the disk

    FaultyDisk disk_;
};

TEST_F(FaultyStore, SaysThatTheDiskIsFullAndWritesEverythingWhenItNoLongerIs) {
    Open();
    FaultyDisk::Set(Fault::Full);
    store_->Add(ChangeOf("cam-1", "output.mode", 1));
    store_->Add(AttemptOf("cam-1", 1));
    store_->Put("users", "anna", "1");
    EXPECT_FALSE(Flush());
    EXPECT_EQ(store_->Condition().state, StoreState::DiskFull);
    EXPECT_THAT(store_->Condition().sentence, HasSubstr("is full"));
    EXPECT_EQ(store_->Condition().pending, 3U);

    store_->Put("users", "anna", "2");
    FaultyDisk::Set(Fault::None);
    while (!Flush()) {
    }
    EXPECT_EQ(store_->Condition().state, StoreState::Writing);
    EXPECT_EQ(store_->Condition().sentence, "");
    EXPECT_EQ(store_->Condition().pending, 0U);
    EXPECT_EQ(History().rows.size(), 1U);
    EXPECT_EQ(Audit().rows.size(), 1U);
    EXPECT_THAT(*store_->Load("users"), testing::ElementsAre(testing::Pair("anna", "2")));
    EXPECT_TRUE(Verify().isIntact);
}

TEST_F(FaultyStore, CanBeReadWhileItCannotBeWritten) {
    Open();
    store_->Add(ChangeOf("cam-1", "output.mode", 1));
    ASSERT_TRUE(Flush());
    FaultyDisk::Set(Fault::ReadOnly);
    store_->Add(ChangeOf("cam-1", "output.mode", 2));
    EXPECT_FALSE(Flush());
    EXPECT_EQ(store_->Condition().state, StoreState::ReadOnly);
    EXPECT_EQ(History().rows.size(), 1U);
}

TEST_F(FaultyStore, CountsWhatItDropsAndSaysSoInTheAudit) {
    Gateway::StoreSettings settings = Settings();
    settings.mostPendingChanges = 10;
    settings.mostPendingAttempts = 5;
    Open(settings);
    FaultyDisk::Set(Fault::Full);
    for (int i = 0; i < 13; ++i) {
        store_->Add(ChangeOf("cam-1", "output.mode", i));
    }
    for (int i = 0; i < 6; ++i) {
        store_->Add(AttemptOf("cam-1", i));
    }
    EXPECT_FALSE(Flush());
    EXPECT_EQ(store_->Condition().lostChanges, 3U);
    EXPECT_EQ(store_->Condition().lostAttempts, 1U);
    FaultyDisk::Set(Fault::None);
    while (!Flush()) {
    }
    EXPECT_EQ(History().rows.size(), 10U);
    const Gateway::AuditPage audit = Audit({.device = ""});
    ASSERT_EQ(audit.rows.size(), 6U);
    const auto note = std::find_if(audit.rows.begin(), audit.rows.end(),
                                   [](const Gateway::Attempt& attempt) { return attempt.outcome == "not-recorded"; });
    ASSERT_NE(note, audit.rows.end());
    EXPECT_EQ(note->value, "{\"changes\":3,\"attempts\":1}");
    EXPECT_TRUE(Verify().isIntact);
}

TEST_F(FaultyStore, KeepsIdsAndTheChainAcrossAFailedTransaction) {
    Open();
    store_->Add(AttemptOf("cam-1", 1));
    ASSERT_TRUE(Flush());
    FaultyDisk::Set(Fault::Full);
    store_->Add(ChangeOf("a-new-name", "output.mode", 1));
    store_->Add(AttemptOf("cam-1", 2));
    EXPECT_FALSE(Flush());
    FaultyDisk::Set(Fault::None);
    store_->Add(ChangeOf("another-new-name", "output.mode", 2));
    store_->Add(AttemptOf("cam-1", 3));
    while (!Flush()) {
    }
    EXPECT_TRUE(Verify().isIntact) << Verify().problem;
    EXPECT_EQ(Audit().rows.at(0).id, 3);
    EXPECT_EQ(History({.device = "a-new-name"}).rows.size(), 1U);
    EXPECT_EQ(History({.device = "another-new-name"}).rows.size(), 1U);
}

TEST_F(FaultyStore, StartsOnADiskThatIsFull) {
    FaultyDisk::Set(Fault::Full);
    Open();
    EXPECT_EQ(store_->Condition().state, StoreState::DiskFull);
    store_->Add(ChangeOf("cam-1", "output.mode", 1));
    FaultyDisk::Set(Fault::None);
    while (!Flush()) {
    }
    EXPECT_EQ(History().rows.size(), 1U);
}

TEST_F(FaultyStore, StartsOnAReadOnlyDiskAndKnowsItsDocuments) {
    Open();
    store_->Put("users", "anna", "1");
    store_.reset();
    FaultyDisk::Set(Fault::ReadOnly);
    Open();
    EXPECT_EQ(store_->Condition().state, StoreState::ReadOnly);
    EXPECT_THAT(store_->Load("users"), testing::Optional(testing::ElementsAre(testing::Pair("anna", "1"))));
    store_->Put("users", "bert", "2");
    EXPECT_FALSE(Flush());
    FaultyDisk::Set(Fault::None);
    while (!Flush()) {
    }
    EXPECT_EQ(store_->Load("users")->size(), 2U);
}

class DamagedStore : public StoreFixture {};

TEST_F(DamagedStore, IsLeftAsItIsAndSaysSo) {
    const std::string content(8192, 'x');
    folder_.Make("gateway.db", content);
    Open();
    EXPECT_EQ(store_->Condition().state, StoreState::Corrupt);
    EXPECT_THAT(store_->Condition().sentence, HasSubstr("restore a backup"));
    EXPECT_EQ(store_->Load("users"), std::nullopt);
    store_->Add(ChangeOf("cam-1", "output.mode", 1));
    EXPECT_FALSE(Flush());
    EXPECT_THAT(History().problem, HasSubstr("damaged"));
    EXPECT_EQ(store_->Condition().pending, 1U);
    store_.reset();
    EXPECT_EQ(ContentOf(path_), content);
}

TEST_F(DamagedStore, IsWrittenAgainWhenTheFileHasBeenReplaced) {
    folder_.Make("gateway.db", std::string(8192, 'x'));
    Open();
    store_->Add(ChangeOf("cam-1", "output.mode", 1));
    EXPECT_FALSE(Flush());
    std::filesystem::remove(path_);
    while (!Flush()) {
    }
    EXPECT_EQ(store_->Condition().state, StoreState::Writing);
    EXPECT_EQ(History().rows.size(), 1U);
}

TEST_F(DamagedStore, SaysThatAPageOfATableIsDamaged) {
    Open();
    for (int i = 0; i < 3000; ++i) {
        store_->Add(ChangeOf("cam-1", "output.mode", i));
    }
    ASSERT_TRUE(Flush());
    store_.reset();
    {
        std::fstream file(path_, std::ios::in | std::ios::out | std::ios::binary);
        for (std::uintmax_t page = 2; page < std::filesystem::file_size(path_) / 4096; ++page) {
            file.seekp(std::streamoff(page * 4096));
            file << std::string(4096, 'x');
        }
    }
    Open();
    EXPECT_THAT(History().problem, HasSubstr("damaged"));
    store_->Add(ChangeOf("cam-1", "output.mode", 1));
    EXPECT_FALSE(Flush());
    EXPECT_EQ(store_->Condition().state, StoreState::Corrupt);
}

TEST_F(DamagedStore, AFolderThatDoesNotExistMakesItUnavailable) {
    path_ = folder_.PathOf("none/gateway.db");
    Open();
    EXPECT_EQ(store_->Condition().state, StoreState::Unavailable);
    EXPECT_THAT(store_->Condition().sentence, HasSubstr(path_));
    EXPECT_EQ(store_->Load("users"), std::nullopt);
}

}  // namespace
}  // namespace Morquil::Testing
