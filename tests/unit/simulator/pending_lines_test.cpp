#include "simulator/streams/pending_lines.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace Morquil::Simulator {
namespace {

TEST(PendingLines, BlockTheirReaderUntilOneIsCarriedOut) {
    PendingLines lines(2);
    std::atomic<int> added{0};
    std::atomic<int> carriedOut{0};
    std::thread reader([&] {
        while (added < 1000 && lines.Add()) {
            ++added;
            EXPECT_LE(added, carriedOut + 2);
        }
    });
    while (carriedOut < 998) {
        if (added > carriedOut) {
            ++carriedOut;
            lines.Remove(1);
        }
    }
    reader.join();
    EXPECT_EQ(added, 1000);
}

TEST(PendingLines, ReleaseTheirReaderAtTheEnd) {
    PendingLines lines(1);
    EXPECT_TRUE(lines.Add());
    std::thread reader([&] { EXPECT_FALSE(lines.Add()); });
    lines.Close();
    reader.join();
    lines.Remove(1);
    EXPECT_FALSE(lines.Add());
}

}  // namespace
}  // namespace Morquil::Simulator
