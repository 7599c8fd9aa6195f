// The documentation of the command line for shells and people.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <regex>

#include "command/arguments/options.h"
#include "command/properties/property.h"
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

TEST(Help, IsWrittenToStandardOutput) {
    for (const char* const option : {"--help", "--version"}) {
        const Outcome outcome = RunCommand("127.0.0.1", {option});
        EXPECT_EQ(outcome.code, ExitCode::Done);
        EXPECT_NE(outcome.out.find("morquilctl"), std::string::npos);
        EXPECT_EQ(outcome.err, "");
    }
}

}  // namespace
}  // namespace Morquil::Testing
