#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>

#include "simulator/text/text_lines.h"
#include "tests/kit/temporary_folder.h"
#include "tests/system/simulator_program/started_program.h"

namespace Morquil::Testing {
namespace {

/// The names of all options in `text`, with their dashes.
std::set<std::string> OptionNames(std::string_view text) {
    std::set<std::string> names;
    for (std::size_t at = text.find("--"); at != std::string_view::npos; at = text.find("--", at + 2)) {
        const std::size_t end = text.find_first_not_of("abcdefghijklmnopqrstuvwxyz-", at);
        names.emplace(text.substr(at, end - at));
    }
    return names;
}

/// The page from which the man page is made. The lines below the heads of its tables are no options.
std::string Manual() {
    return std::regex_replace(ContentOf(MORQUIL_MANUALS "/morquil-sim.md"), std::regex("\\|---"), "");
}

TEST(Help, SucceedsAndNamesTheProgram) {
    const ProgramRun run = RunProgram({"--version"});
    EXPECT_EQ(run.exitStatus, 0);
    EXPECT_TRUE(run.output.starts_with("morquil-sim ")) << run.output;
}

TEST(Manual, ExplainsExactlyTheOptionsOfTheHelp) {
    StartedProgram help({"--help"});
    std::string text;
    for (int line = 0; line < 200; ++line) {
        text += help.NextLine() + "\n";
    }
    EXPECT_GT(OptionNames(text).size(), 20U);
    EXPECT_EQ(OptionNames(Manual()), OptionNames(text));
    EXPECT_EQ(help.AwaitEnd(), 0);
}

TEST(Manual, ExplainsEveryCommand) {
    const std::string manual = Manual();
    StartedProgram help({"--help"});
    std::string line;
    while (!line.starts_with("Commands")) {
        line = help.NextLine();
    }
    for (line = help.NextLine(); line.starts_with("  "); line = help.NextLine()) {
        const std::string command = line.substr(2, line.find("  ", 2) - 2);
        EXPECT_NE(manual.find("\n| `" + command + "` |"), std::string::npos) << command;
    }
}

}  // namespace
}  // namespace Morquil::Testing
