#include <SQLiteCpp/Database.h>
#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <random>

#include "tests/unit/gateway/store/store_fixture.h"

namespace Morquil::Testing {
namespace {

/// The program that writes, and the numbers that it prints.
class KilledWriter {
public:
    explicit KilledWriter(const std::string& database) {
        int ends[2] = {};
        EXPECT_EQ(pipe(ends), 0);
        process_ = fork();
        if (process_ == 0) {
            dup2(ends[1], STDOUT_FILENO);
            close(ends[0]);
            close(ends[1]);
            execl(MORQUIL_KILLED_WRITER, MORQUIL_KILLED_WRITER, database.c_str(), nullptr);
            _exit(127);
        }
        close(ends[1]);
        output_ = fdopen(ends[0], "r");
    }
    ~KilledWriter() { std::fclose(output_); }
    KilledWriter(const KilledWriter&) = delete;
    KilledWriter& operator=(const KilledWriter&) = delete;

    /// Reads at most `most` numbers. Returns: the last.
    int Read(int most) {
        for (int number = 0; most > 0 && std::fscanf(output_, "%d", &number) == 1; --most) {
            last_ = number;
        }
        return last_;
    }
    /// Returns: the last number that it has printed.
    int Kill() {
        kill(process_, SIGKILL);
        int status = 0;
        EXPECT_EQ(waitpid(process_, &status, 0), process_);
        EXPECT_TRUE(WIFSIGNALED(status)) << "it has ended by itself";
        return Read(1 << 30);
    }

private:
    pid_t process_ = -1;
    std::FILE* output_ = nullptr;
    int last_ = 0;
};

class KilledStore : public StoreFixture {
protected:
    std::int64_t Get(const std::string& query) {
        return SQLite::Database(path_, SQLite::OPEN_READWRITE).execAndGet(query).getInt64();
    }
};

TEST_F(KilledStore, LosesNothingThatWasWrittenAndIsNotDamaged) {
    std::mt19937 random(19);
    std::int64_t rows = 0;
    std::int64_t attempts = 0;
    for (int life = 1; life <= 10; ++life) {
        KilledWriter writer(path_);
        writer.Read(std::uniform_int_distribution(1, 60)(random));
        const int written = writer.Kill();
        ASSERT_GT(written, 0);

        SQLite::Database database(path_, SQLite::OPEN_READWRITE);
        EXPECT_EQ(database.execAndGet("PRAGMA integrity_check").getString(), "ok");
        const std::int64_t present = Get("SELECT count(*) FROM history") - rows;
        rows += present;
        EXPECT_GE(present, written) << "life " << life;
        // What was added one after the other may be written in two transactions.
        const std::int64_t newAttempts = Get("SELECT count(*) FROM audit") - attempts;
        attempts += newAttempts;
        EXPECT_THAT(present - newAttempts, testing::AnyOf(0, 1));
        EXPECT_GE(newAttempts, written);
        EXPECT_THAT(present - Get("SELECT text FROM documents"), testing::AnyOf(0, 1));
        EXPECT_EQ(Get("SELECT max(id) FROM history"), rows) << "without a hole";
        const Gateway::Verification verification = Gateway::VerifyDatabase(path_);
        EXPECT_TRUE(verification.isIntact) << verification.problem;
        EXPECT_EQ(std::int64_t(verification.rows), attempts);
    }
}

}  // namespace
}  // namespace Morquil::Testing
