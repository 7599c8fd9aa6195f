#include <gmock/gmock.h>
#include <sys/stat.h>

#include "tests/unit/gateway/store/store_fixture.h"

namespace Morquil::Testing {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

class StoredDocuments : public StoreFixture {
protected:
    StoredDocuments() { Open(); }
};

TEST_F(StoredDocuments, AreThereAfterARestart) {
    store_->Put("users", "bert", "{\"role\":\"viewer\"}");
    store_->Put("users", "anna", "{}");
    store_->Put("tokens", "anna", "other");
    Reopen();
    EXPECT_THAT(*store_->Load("users"), ElementsAre(Pair("anna", "{}"), Pair("bert", "{\"role\":\"viewer\"}")));
    EXPECT_THAT(*store_->Load("tokens"), ElementsAre(Pair("anna", "other")));
    EXPECT_THAT(*store_->Load("salvos"), IsEmpty());
}

TEST_F(StoredDocuments, HaveTheirLatestText) {
    for (int i = 0; i < 1000; ++i) {
        store_->Put("users", "anna", std::to_string(i));
    }
    ASSERT_TRUE(Flush());
    EXPECT_THAT(*store_->Load("users"), ElementsAre(Pair("anna", "999")));
}

TEST_F(StoredDocuments, CanBeErased) {
    store_->Put("users", "anna", "1");
    ASSERT_TRUE(Flush());
    store_->Erase("users", "anna");
    store_->Erase("users", "nobody");
    ASSERT_TRUE(Flush());
    EXPECT_THAT(*store_->Load("users"), IsEmpty());
}

TEST_F(StoredDocuments, AreInAFileForItsOwnerOnly) {
    store_->Put("users", "anna", "1");
    ASSERT_TRUE(Flush());
    for (const char* suffix : {"", "-wal", "-shm"}) {
        struct stat file {};
        ASSERT_EQ(stat((path_ + suffix).c_str(), &file), 0) << suffix;
        EXPECT_EQ(file.st_mode & 0777, 0600U) << suffix;
    }
}

}  // namespace
}  // namespace Morquil::Testing
