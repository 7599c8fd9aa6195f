// Lines that no device should send, in pieces of every length: the split must make no difference.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>

#include "tests/unit/protocol/recording_sink.h"

namespace Morquil {
namespace {

using Events = RecordingSink::Events;

Events EventsInPieces(std::string_view text, std::size_t length) {
    RecordedParser recorded;
    for (; !text.empty(); text.remove_prefix(std::min(length, text.size()))) {
        recorded.Feed(text.substr(0, length));
    }
    return recorded.sink.AllEvents();
}

void ExpectTheSameInAllPieces(const std::string& text) {
    const Events expected = EventsInPieces(text, 1);
    for (std::size_t length = 2; length <= 300; ++length) {
        ASSERT_EQ(EventsInPieces(text, length), expected) << "pieces of " << length;
    }
}

TEST(OddLines, AreReadAlikeWithControlCharacters) {
    using namespace std::string_literals;
    ExpectTheSameInAllPieces(
        "VIDEO PROC AMP\t:\nGain: 1\n\nVIDEO PROC AMP:\nGain:\t7\nBlack\t: 2\nHue: 3\r\nSha\rrp: 4\n\x7F: 5\n\n"
        "VIDEO PROC AMP\0:\nGain\0: 1\nGain: 8\0 9\n\0Gain: 3\nBlack: 5\n\n"
        "\0:\n\nVIDEO PROC AMP:\0\nGain: 1\n\n\r\n\r\r\nPI\rNG\r\n\nA\0CK\n\nACK\0:\n\n"s);
}

TEST(OddLines, AreReadAlikeWhereverTheColonStands) {
    std::string text = "VIDEO PROC AMP:\n";
    for (std::size_t before = 0; before < 40; ++before) {
        text += std::string(before, 'k') + ":" + std::string(before % 3, ' ') + "1\n";
        text +=
            std::string(before, ' ') + "Gain" + std::string(before % 5, ' ') + "::: " + std::to_string(before) + "\n";
    }
    ExpectTheSameInAllPieces(text + ":\n: \n::: 1\n :Gain: 4\nGain:\nGain\n\n");
}

TEST(OddLines, AreReadAlikeAroundTheLongestLine) {
    std::string text = "NETWORK CONFIG:\n";
    for (const std::size_t length : {254U, 255U, 256U, 257U, 511U, 512U, 513U, 1025U}) {
        const std::string start = "Friendly name: ";
        text += start + std::string(length - start.size(), 'n') + "\n";
        text += std::string(length, ':') + "\n" + std::string(length, '\r') + "\n" + std::string(length, '\t') + "\n";
        text += "NETWORK CONFIG:\nFriendly name: again\n\nNETWORK CONFIG:\n";
    }
    ExpectTheSameInAllPieces(text);
}

TEST(OddLines, EndABlockRightAfterAFullBuffer) {
    const std::string text = "VIDEO PROC AMP:\nGain: 1\n" + std::string(256, 'x') + "\nPING\n\n";
    const Events expected{"error: Input data reached maximum line size of 256 characters",
                          "OnVideoProcAmp: VIDEO PROC AMP:\nGain: 1\n\n", "ping"};
    EXPECT_EQ(EventsOf(text), expected);
    ExpectTheSameInAllPieces(text);
}

}  // namespace
}  // namespace Morquil
