#include "gateway/store/worker.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>
#include <vector>

namespace Morquil::Testing {
namespace {

using Gateway::Worker;

TEST(AWorker, RunsWorkInOrderOnItsOwnThread) {
    std::vector<int> order;
    std::promise<std::thread::id> done;
    Worker worker(10);
    for (int i = 0; i < 5; ++i) {
        EXPECT_TRUE(worker.Run([&order, i] { order.push_back(i); }));
    }
    EXPECT_TRUE(worker.Run([&] { done.set_value(std::this_thread::get_id()); }));
    EXPECT_NE(done.get_future().get(), std::this_thread::get_id());
    EXPECT_EQ(order, (std::vector{0, 1, 2, 3, 4}));
}

TEST(AWorker, RefusesMoreThanMayWait) {
    std::promise<void> started;
    std::promise<void> release;
    Worker worker(2);
    worker.Run([&] {
        started.set_value();
        release.get_future().wait();
    });
    started.get_future().wait();
    EXPECT_TRUE(worker.Run([] {}));
    EXPECT_TRUE(worker.Run([] {}));
    EXPECT_FALSE(worker.Run([] {}));
    release.set_value();
}

TEST(AWorker, FinishesWhatIsRunningAtItsEnd) {
    std::promise<void> started;
    bool isFinished = false;
    {
        Worker worker(5);
        worker.Run([&] {
            started.set_value();
            std::this_thread::yield();
            isFinished = true;
        });
        started.get_future().wait();
    }
    EXPECT_TRUE(isFinished);
}

}  // namespace
}  // namespace Morquil::Testing
