// The documentation of the command line for shells and people.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>

#include "command/arguments/options.h"
#include "command/properties/property.h"
#include "diagnosis/diagnosis.h"
#include "tests/system/command/invocation.h"

namespace Morquil::Testing {
namespace {

using Command::ExitCode;

/// The man page is made from it.
std::string Manual() {
    std::ifstream file(MORQUIL_SOURCES "/docs/tools/morquilctl.md", std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(Manual, DescribesEveryCommandAndOption) {
    const std::string page = Manual();
    const Command::Grammar grammar = Command::CommandLineGrammar();
    EXPECT_GE(grammar.commands.size(), 10u);
    std::vector<Command::OptionForm> options = grammar.options;
    for (const Command::Grammar& command : grammar.commands) {
        options.insert(options.end(), command.options.begin(), command.options.end());
        const std::regex row("\\n\\| `" + command.name + "\\b");
        EXPECT_TRUE(std::regex_search(page, row)) << command.name;
    }
    for (const Command::OptionForm& option : options) {
        EXPECT_NE(page.find("`" + option.name), std::string::npos) << option.name;
    }
}

TEST(Manual, HasEverySentenceAboutAConnection) {
    const std::string page = Manual();
    for (int fault = 0; fault <= static_cast<int>(Diagnosis::Fault::None); ++fault) {
        const std::string sentence(Diagnosis::SentenceOf(static_cast<Diagnosis::Fault>(fault)));
        EXPECT_NE(page.find("| " + sentence), std::string::npos) << sentence;
    }
}

TEST(Help, IsWrittenToStandardOutput) {
    for (const char* const option : {"--help", "--version"}) {
        const Outcome outcome = RunCommand("127.0.0.1", {option});
        EXPECT_EQ(outcome.code, ExitCode::Done);
        EXPECT_NE(outcome.out.find("morquilctl"), std::string::npos);
        EXPECT_EQ(outcome.err, "");
    }
}

TEST(Help, OfACommandHasItsArgumentsItsOptionsAndTwoExamples) {
    for (const Command::Grammar& command : Command::CommandLineGrammar().commands) {
        const std::string help = RunCommand("127.0.0.1", {command.name, "--help"}).out;
        EXPECT_EQ(help.find("Usage: morquilctl [OPTION]... " + command.name), 0u) << help;
        EXPECT_NE(help.find(command.words), std::string::npos) << help;
        ASSERT_EQ(command.examples.size(), 2u) << command.name;
        for (const std::string& example : command.examples) {
            EXPECT_NE(help.find("  " + example + "\n"), std::string::npos) << help;
            EXPECT_NE(example.find(command.name), std::string::npos) << example;
        }
        for (const Command::OptionForm& option : command.options) {
            EXPECT_NE(help.find(option.name), std::string::npos) << help;
        }
        EXPECT_EQ(help.find("--version"), std::string::npos) << help;
    }
}

TEST(Help, FollowsTheWidthOfTheTerminal) {
    for (const std::size_t width : {60U, 80U, 120U}) {
        std::istringstream help(Command::ParseCommandLine({"--help"}, width).output);
        std::size_t longest = 0;
        for (std::string line; std::getline(help, line);) {
            const bool isExample = line.find("  morquilctl ") == 0;
            longest = std::max(longest, isExample ? 0 : line.size());
        }
        EXPECT_LE(longest, width);
        EXPECT_GT(longest, width - 20);
    }
}

}  // namespace
}  // namespace Morquil::Testing
