// On Windows these run against the system's own functions: both must behave the same.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>

#include "tests/kit/owned_bstr.h"

namespace Morquil::Testing {
namespace {

std::uint32_t PrefixOf(BSTR text) {
    std::uint32_t bytes = 0;
    std::memcpy(&bytes, reinterpret_cast<const char*>(text) - sizeof bytes, sizeof bytes);
    return bytes;
}

TEST(Bstr, CopiesAZeroTerminatedText) {
    const OwnedBstr text(SysAllocString(OLESTR("Morquil")));

    EXPECT_EQ(text.Units(), OLESTR("Morquil"));
    EXPECT_EQ(text.Get()[7], 0);
}

TEST(Bstr, CarriesItsLengthInBytesBeforeTheText) {
    const OwnedBstr text(SysAllocString(OLESTR("abc")));

    EXPECT_EQ(PrefixOf(text.Get()), 6U);
}

TEST(Bstr, KeepsZeroUnitsInsideTheText) {
    const OLECHAR units[] = {'a', 0, 'b'};
    const OwnedBstr text(SysAllocStringLen(units, 3));

    EXPECT_EQ(SysStringLen(text.Get()), 3U);
    EXPECT_EQ(text.Units(), Utf16(units, 3));
    EXPECT_EQ(text.Get()[3], 0);
}

TEST(Bstr, CopiesOnlyAsManyUnitsAsAskedFor) {
    const OwnedBstr text(SysAllocStringLen(OLESTR("abcdef"), 2));

    EXPECT_EQ(text.Units(), OLESTR("ab"));
    EXPECT_EQ(text.Get()[2], 0);
}

TEST(Bstr, ReturnsTerminatedRoomForANullTextWithALength) {
    const OwnedBstr text(SysAllocStringLen(nullptr, 5));

    ASSERT_NE(text.Get(), nullptr);
    EXPECT_EQ(SysStringLen(text.Get()), 5U);
    EXPECT_EQ(text.Get()[5], 0);
}

TEST(Bstr, DistinguishesAnEmptyTextFromNull) {
    const OwnedBstr empty(SysAllocString(OLESTR("")));

    ASSERT_NE(empty.Get(), nullptr);
    EXPECT_EQ(SysStringLen(empty.Get()), 0U);
    EXPECT_EQ(SysAllocString(nullptr), nullptr);
}

TEST(Bstr, ToleratesNull) {
    EXPECT_EQ(SysStringLen(nullptr), 0U);
    SysFreeString(nullptr);
}

TEST(Bstr, RefusesALengthWhoseBytesDoNotFitTheirPrefix) {
    EXPECT_EQ(SysAllocStringLen(nullptr, 0xFFFFFFFFU), nullptr);
    EXPECT_EQ(SysAllocStringLen(nullptr, 0x80000000U), nullptr);
    EXPECT_EQ(SysAllocStringLen(nullptr, 0x7FFFFFFFU), nullptr);
}

}  // namespace
}  // namespace Morquil::Testing
