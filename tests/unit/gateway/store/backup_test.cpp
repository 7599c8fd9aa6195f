#include <gmock/gmock.h>
#include <sys/stat.h>

#include "tests/unit/gateway/store/store_fixture.h"

namespace Morquil::Testing {
namespace {

using testing::HasSubstr;

class StoreBackup : public StoreFixture {
protected:
    StoreBackup() { Open(); }

    std::string BackUpTo(const std::string& path) {
        return caller_.Await<std::string>([&](auto done) { store_->Backup(path, done); });
    }
};

TEST_F(StoreBackup, HoldsEverythingThoughRowsKeepComing) {
    for (int i = 0; i < 10000; ++i) {
        store_->Add(ChangeOf("cam-1", "output.mode", i));
        store_->Add(AttemptOf("cam-1", i));
    }
    store_->Put("users", "anna", "1");
    ASSERT_TRUE(Flush());
    bool isDone = false;
    std::string problem = "not done";
    store_->Backup(folder_.PathOf("copy.db"), [&](std::string result) {
        problem = std::move(result);
        isDone = true;
    });
    for (int i = 0; !isDone; ++i) {
        store_->Add(AttemptOf("cam-2", i));
        store_->Flush([](bool) {});
        ASSERT_TRUE(caller_.RunOne());
    }
    EXPECT_EQ(problem, "");
    store_.reset();

    path_ = folder_.PathOf("copy.db");
    const Gateway::Verification verification = Gateway::VerifyDatabase(path_);
    EXPECT_TRUE(verification.isIntact) << verification.problem;
    EXPECT_GE(verification.rows, 10000U);
    struct stat file {};
    ASSERT_EQ(stat(path_.c_str(), &file), 0);
    EXPECT_EQ(file.st_mode & 0777, 0600U);
    Open();
    EXPECT_EQ(store_->Load("users")->size(), 1U);
    EXPECT_EQ(History({.to = At(1)}).rows.size(), 1U);
}

TEST_F(StoreBackup, DoesNotReplaceAFile) {
    const std::string existing = folder_.Make("copy.db", "precious");
    EXPECT_THAT(BackUpTo(existing), HasSubstr("File exists"));
    EXPECT_EQ(ContentOf(existing), "precious");
}

TEST_F(StoreBackup, LeavesNothingWhenItFails) {
    EXPECT_THAT(BackUpTo(folder_.PathOf("none/copy.db")), HasSubstr("No such file"));
    store_.reset();
    folder_.Make("gateway.db", std::string(8192, 'x'));
    Open();
    EXPECT_THAT(BackUpTo(folder_.PathOf("copy.db")), HasSubstr("damaged"));
    EXPECT_FALSE(folder_.Names().contains("copy.db"));
    EXPECT_FALSE(folder_.Names().contains("copy.db.partial"));
}

}  // namespace
}  // namespace Morquil::Testing
