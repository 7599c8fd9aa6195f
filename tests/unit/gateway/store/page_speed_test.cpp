// Pages and purges take the same time however many rows there are.
#include <SQLiteCpp/Transaction.h>
#include <gmock/gmock.h>

#include <cstdlib>
#include <ctime>

#include "gateway/store/history_table.h"
#include "gateway/store/page_reader.h"
#include "gateway/store/purge.h"
#include "tests/unit/gateway/store/store_fixture.h"

namespace Morquil::Testing {
namespace {

using Gateway::Query;
using Clock = std::chrono::steady_clock;
using Milliseconds = std::chrono::duration<double, std::milli>;

std::vector<Query> Queries() {
    return {{},
            {.device = "cam-7"},
            {.property = "property-3"},
            {.device = "cam-7", .property = "property-3"},
            {.device = "cam-7", .from = At(100), .to = At(5000)},
            {.from = At(100), .to = At(5000), .after = "1772366500000.77"}};
}

class LargeHistory : public testing::Test {
protected:
    /// Of 100 devices with 20 properties each, 100 rows a second.
    void Fill(std::size_t rows) {
        constexpr std::size_t perTransaction = 100000;
        for (std::size_t row = 0; row < rows;) {
            SQLite::Transaction transaction(*database_);
            Gateway::HistoryWriter writer(*database_);
            for (std::size_t end = std::min(rows, row + perTransaction); row < end; ++row) {
                writer.Add(ChangeOf("cam-" + std::to_string(row % 100), "property-" + std::to_string(row / 100 % 20),
                                    int(row / 100)));
            }
            transaction.commit();
            database_->exec("PRAGMA wal_checkpoint(TRUNCATE)");
        }
    }
    struct Longest {
        double inAll = 0;
        double processor = 0;  // without waiting for the disk, or for other programs
    };
    template <class Call>
    static void Measure(int calls, Longest& longest, Call call) {
        for (int i = 0; i < calls; ++i) {
            const auto start = Clock::now();
            const std::clock_t processor = std::clock();
            call();
            longest.processor = std::max(longest.processor, 1000.0 * double(std::clock() - processor) / CLOCKS_PER_SEC);
            longest.inAll = std::max(longest.inAll, Milliseconds(Clock::now() - start).count());
        }
    }

    TemporaryFolder folder_;
    Gateway::Connection database_ = Gateway::OpenForWriting(folder_.PathOf("gateway.db"));
};

TEST_F(LargeHistory, IsReadByAnIndexThatIsInOrderAlready) {
    for (const Query& query : Queries()) {
        SQLite::Statement plan(*database_, "EXPLAIN QUERY PLAN SELECT * FROM history" + ConditionOf(query));
        ASSERT_TRUE(plan.executeStep());
        EXPECT_THAT(plan.getColumn(3).getString(), testing::StartsWith("SEARCH history USING INDEX"));
        EXPECT_FALSE(plan.executeStep()) << plan.getColumn(3).getString() << ": rows are sorted first";
    }
}

TEST_F(LargeHistory, GivesPagesAndIsPurgedInTime) {
    const char* const wanted = std::getenv("MORQUIL_HISTORY_ROWS");
    if (wanted == nullptr) {
        GTEST_SKIP() << "measures: set MORQUIL_HISTORY_ROWS, to 10000000 for example";
    }
    Fill(std::strtoul(wanted, nullptr, 10));
    Longest page;
    for (const Query& query : Queries()) {
        Measure(20, page, [&] { Gateway::ReadHistoryPage(*database_, query); });
    }
    Gateway::Purge purge({.historyAge = std::chrono::hours(1)});
    Longest slice;
    Measure(500, slice, [&] { purge.Step(*database_, At(100000000)); });
    std::printf("longest page %.1f ms (%.1f ms of the processor), longest slice of a purge %.1f ms (%.1f ms)\n",
                page.inAll, page.processor, slice.inAll, slice.processor);
    EXPECT_LT(page.inAll, 50);
    EXPECT_LT(slice.inAll, 50);
}

}  // namespace
}  // namespace Morquil::Testing
