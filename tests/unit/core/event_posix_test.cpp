#include <gtest/gtest.h>

#include <cerrno>

#include "core/event.h"
#include "tests/unit/core/failing_allocation.h"

namespace QRN::Core {
namespace {

TEST(Event, IsNotCreatedWithoutMemory) {
    Event event;
    Morquil::Testing::FailNextAllocation();
    EXPECT_EQ(event.Create(), static_cast<std::uint32_t>(ENOMEM));
    EXPECT_EQ(event.Set(), 6U);
    EXPECT_EQ(event.Create(), 0U);
    EXPECT_EQ(event.Set(), 0U);
}

}  // namespace
}  // namespace QRN::Core
