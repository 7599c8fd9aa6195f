#include "protocol/text/gathered_text.h"

#include <gtest/gtest.h>

#include <cstdarg>
#include <cstddef>
#include <string>

namespace Morquil {
namespace {

[[gnu::format(printf, 2, 3)]] void Append(GatheredText& text, const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    text.AppendPiece(format, arguments);
    va_end(arguments);
}

TEST(GatheredText, HoldsAnyNumberOfPieces) {
    GatheredText text;
    std::string expected;
    for (int piece = 0; piece < 3000; ++piece) {
        Append(text, "%s: %d\n", "Line offset", piece);
        expected += "Line offset: " + std::to_string(piece) + '\n';
        ASSERT_EQ(text.View(), expected);
    }
}

TEST(GatheredText, CutsEveryPieceOnItsOwnWhereverItIs) {
    for (int before = 0; before < 600; ++before) {
        GatheredText text;
        for (int piece = 0; piece < before; ++piece) {
            Append(text, "x");
        }
        Append(text, "%s", std::string(300, 'p').c_str());
        Append(text, "\n");
        const auto length = static_cast<std::size_t>(before);
        ASSERT_EQ(text.View(), std::string(length, 'x') + std::string(255, 'p') + '\n');
    }
}

TEST(GatheredText, StartsAgainAfterItIsCleared) {
    GatheredText text;
    Append(text, "%s", "forgotten");
    text.Clear();
    EXPECT_EQ(text.View(), "");
    Append(text, "%u", 7U);
    EXPECT_EQ(text.View(), "7");
}

}  // namespace
}  // namespace Morquil
