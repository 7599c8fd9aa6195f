#include "protocol/text/message_to_string.h"

#include <gtest/gtest.h>

#include <string>

#include "protocol/blocks/all.h"
#include "protocol/text/cut_detector.h"

namespace Morquil {
namespace {

TEST(MessageToString, IsEmptyAtFirst) {
    EXPECT_EQ(MessageToString().GetText(), "");
}

TEST(MessageToString, AppendsPieceToPiece) {
    MessageToString collector;
    collector.SendFormatted("%s:", "Types");
    collector.SendFormatted(" %s", "Input");
    collector.SendFormatted("\n");
    EXPECT_EQ(collector.GetText(), "Types: Input\n");
}

TEST(MessageToString, IsEmptiedByTheNextMessage) {
    MessageToString collector;
    collector.SendFormatted("left over");
    collector.BeginMessage();
    EXPECT_EQ(collector.GetText(), "");
}

TEST(MessageToString, KeepsItsTextAtTheEndOfAMessage) {
    MessageToString collector;
    collector.SendFormatted("kept");
    EXPECT_TRUE(collector.EndMessage());
    EXPECT_EQ(collector.GetText(), "kept");
}

TEST(MessageToString, KeepsAPieceOf255CharactersWhole) {
    MessageToString collector;
    collector.SendFormatted("%s\n", std::string(254, 'p').c_str());
    EXPECT_EQ(collector.GetText(), std::string(254, 'p') + "\n");
}

TEST(MessageToString, CutsEveryPieceAfter255Characters) {
    MessageToString collector;
    collector.SendFormatted("%s\n", std::string(255, 'p').c_str());
    collector.SendFormatted("%s\n", std::string(1000, 'q').c_str());
    EXPECT_EQ(collector.GetText(), std::string(255, 'p') + std::string(255, 'q'));
}

TEST(MessageToString, LosesTheLineFeedOfADecimalThatIsTooLong) {
    VariableAspectRatioMessage message;
    message.sizeXLeft.Set(1e300);
    const std::string text = TextOf(message);
    EXPECT_EQ(text.size(), sizeof "VARIABLE ASPECT RATIO:\n" - 1 + 255 + 1);
    EXPECT_EQ(text.find('\n', sizeof "VARIABLE ASPECT RATIO:\n" - 1), text.size() - 1);
}

TEST(CutDetector, NoticesAMessageThatWouldBeCut) {
    VariableAspectRatioMessage message;
    message.sizeXLeft.Set(1e200);
    CutDetector fits;
    EXPECT_TRUE(message.WriteTo(fits));
    EXPECT_FALSE(fits.HasCut());
    message.sizeXRight.Set(-1e300);
    CutDetector cut;
    EXPECT_TRUE(message.WriteTo(cut));
    EXPECT_TRUE(cut.HasCut());
}

}  // namespace
}  // namespace Morquil
