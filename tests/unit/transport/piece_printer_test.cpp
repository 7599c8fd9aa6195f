#include "transport/piece_printer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace Morquil {
namespace {

std::string output;
std::size_t room = 0;

// Accepts whole texts, except one that is larger than any output.
std::size_t WriteWhole(std::string_view text) {
    if (text.size() > room) {
        return 0;
    }
    room -= text.size();
    output += text;
    return text.size();
}

std::size_t WritePart(std::string_view text) {
    const std::size_t written = std::min(text.size(), room);
    return WriteWhole(text.substr(0, written));
}

class PiecePrinterTest : public testing::Test {
protected:
    PiecePrinterTest() {
        output.clear();
        room = 100'000;
    }

    PiecePrinter printer{&WriteWhole};
};

TEST_F(PiecePrinterTest, PrintsWhatCanBeWritten) {
    printer.Print("one\n");
    printer.Print("");
    printer.Print("two");
    EXPECT_EQ(output, "one\ntwo");
}

TEST_F(PiecePrinterTest, DropsWholePiecesAndReportsLaterHowManyBytes) {
    printer.Print("one\n");
    room = 3;
    printer.Print("four");
    printer.Print("two");
    EXPECT_EQ(output, "one\n") << "a later piece does not take the place of an earlier one";
    room = 100;
    printer.Print("three\n");
    printer.Print("five\n");
    EXPECT_EQ(output, "one\n[MorquilAPI: 7 bytes of output were dropped here]\nthree\nfive\n");
}

TEST_F(PiecePrinterTest, EndsALineThatWasLeftUnfinishedBeforeTheNotice) {
    printer.Print("one");
    room = 0;
    printer.Print("two");
    room = 100;
    printer.Print("three");
    EXPECT_EQ(output, "one\n[MorquilAPI: 3 bytes of output were dropped here]\nthree");
}

TEST_F(PiecePrinterTest, CountsOnWhereOnlyTheNoticeCouldBeWritten) {
    room = 0;
    printer.Print("one\n");
    room = 60;
    printer.Print(std::string(70, 'x'));
    room = 100;
    printer.Print("two\n");
    EXPECT_EQ(output,
              "[MorquilAPI: 4 bytes of output were dropped here]\n[MorquilAPI: 70 bytes of output were dropped here]\n"
              "two\n");
}

TEST_F(PiecePrinterTest, CountsTheRestOfAPieceThatWasWrittenInPart) {
    PiecePrinter partial{&WritePart};
    room = 2;
    partial.Print("four");
    room = 100;
    partial.Print("!\n");
    EXPECT_EQ(output, "fo\n[MorquilAPI: 2 bytes of output were dropped here]\n!\n");
}

TEST_F(PiecePrinterTest, PrintsWhatIsLongerThanAPipeInParts) {
    const std::string text(10'000, 'x');
    printer.Print(text);
    EXPECT_EQ(output, text);
    room = 4096;
    printer.Print(text);
    room = 100;
    printer.Print("!");
    EXPECT_EQ(output, text + std::string(4096, 'x') + "\n[MorquilAPI: 5904 bytes of output were dropped here]\n!");
}

}  // namespace
}  // namespace Morquil
