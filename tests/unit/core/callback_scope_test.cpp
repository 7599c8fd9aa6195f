#include "core/callback_scope.h"

#include <gtest/gtest.h>

#include <memory>
#include <thread>

#include "tests/kit/threads.h"

namespace QRN::Core {
namespace {

TEST(CallbackScope, MarksItsThreadAsLongAsItExists) {
    EXPECT_FALSE(CallbackScope::OnThisThread());
    {
        const CallbackScope scope;
        EXPECT_TRUE(CallbackScope::OnThisThread());
    }
    EXPECT_FALSE(CallbackScope::OnThisThread());
}

TEST(CallbackScope, Nests) {
    const CallbackScope outer;
    {
        const CallbackScope inner;
        EXPECT_TRUE(CallbackScope::OnThisThread());
    }
    EXPECT_TRUE(CallbackScope::OnThisThread());
}

TEST(CallbackScope, MarksNoOtherThread) {
    const CallbackScope scope;
    bool marked = true;
    std::thread([&] { marked = CallbackScope::OnThisThread(); }).join();
    EXPECT_FALSE(marked);
}

TEST(CallbackScope, MayEndInAnyOrder) {
    auto first = std::make_unique<CallbackScope>();
    auto second = std::make_unique<CallbackScope>();
    auto third = std::make_unique<CallbackScope>();
    second.reset();
    EXPECT_TRUE(CallbackScope::OnThisThread());
    first.reset();
    EXPECT_TRUE(CallbackScope::OnThisThread());
    third.reset();
    EXPECT_FALSE(CallbackScope::OnThisThread());
}

TEST(CallbackScope, KeepsThreadsApartThatEnterAndLeaveAtOnce) {
    const Morquil::Testing::Threads threads(4, [] {
        for (int round = 0; round < 2000; ++round) {
            EXPECT_FALSE(CallbackScope::OnThisThread());
            const CallbackScope scope;
            EXPECT_TRUE(CallbackScope::OnThisThread());
        }
    });
}

}  // namespace
}  // namespace QRN::Core
