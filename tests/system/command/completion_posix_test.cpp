// The real shells complete a line by their scripts, which call the program.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "command/completion/completion_scripts.h"
#include "tests/kit/temporary_folder.h"

namespace Morquil::Testing {
namespace {

using Words = std::vector<std::string>;

std::string OutputOf(const std::string& command) {
    std::string output;
    FILE* const pipe = popen(command.c_str(), "re");
    EXPECT_NE(pipe, nullptr);
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) {
        output += static_cast<char>(c);
    }
    EXPECT_EQ(pclose(pipe), 0) << command;
    return output;
}

std::string Joined(const Words& words) {
    std::string line = "morquilctl";
    for (const std::string& word : words) {
        line += " " + word;
    }
    return line;
}

std::string ScriptOf(const std::string& shell) {
    for (const Command::CompletionScript& script : Command::completionScripts) {
        if (script.shell == shell) {
            return std::string(script.text);
        }
    }
    return {};
}

/// One shell, and how to run its script outside a terminal.
struct Shell {
    std::string name;
    std::string run;
    std::string (*ask)(const Words& line);
};

std::string AskBash(const Words& line) {
    return "COMP_WORDS=(" + Joined(line) + (line.back().empty() ? "''" : "") +
           ")\nCOMP_CWORD=" + std::to_string(line.size()) + "\ncompopt() { echo '<file>'; }\n_morquilctl morquilctl\n" +
           "printf '%s\\n' \"${COMPREPLY[@]}\"\n";
}

std::string AskZsh(const Words& line) {
    return "words=(" + Joined(line) + (line.back().empty() ? "''" : "") +
           ")\nCURRENT=" + std::to_string(line.size() + 1) +
           "\n_files() { echo '<file>' }\n"
           "_describe() { printf '%s\\n' \"${(@)${(@P)${@[-1]}}%%:*}\" }\n_morquilctl\n";
}

std::string AskFish(const Words& line) {
    return "complete -C '" + Joined(line) + "'\n";
}

class Completing : public testing::TestWithParam<Shell> {
protected:
    /// The candidates: `line` is the words after the command's name, the last of them unfinished.
    Words Candidates(const Words& line) const {
        const TemporaryFolder folder;
        const std::string groups = folder.Make("groups", "rack-1: 10.0.0.1\nrack-2: 10.0.0.2\n");
        const std::string before = GetParam().name == "zsh" ? "compdef() { true }\n" : "";
        const std::string script = before + ScriptOf(GetParam().name) + GetParam().ask(line);
        const std::string path = std::filesystem::path(MORQUIL_COMMAND_PATH).parent_path().string() + ":$PATH";
        const std::string output = OutputOf("MORQUIL_GROUPS=" + groups + " PATH=\"" + path + "\" " + GetParam().run +
                                            " " + folder.Make("script", script));
        Words candidates;
        for (std::size_t at = 0; at < output.size();) {
            const std::size_t end = output.find('\n', at);
            // fish appends a tab and the description of a candidate.
            candidates.push_back(output.substr(at, end - at).substr(0, output.substr(at, end - at).find('\t')));
            at = end + 1;
        }
        return candidates;
    }
    bool Offers(const Words& line, const std::string& candidate) const {
        const Words candidates = Candidates(line);
        return std::find(candidates.begin(), candidates.end(), candidate) != candidates.end();
    }
};

TEST_P(Completing, OffersCommands) {
    EXPECT_EQ(Candidates({"stat"}), Words{"status"});
    EXPECT_EQ(Candidates({"--json", "stat"}), Words{"status"});
}

TEST_P(Completing, KnowsWhichOptionsTakeTheNextWord) {
    EXPECT_EQ(Candidates({"--device", "127.0.0.1", "stat"}), Words{"status"});
    EXPECT_EQ(Candidates({"-d", "127.0.0.1", "-t", "3", "stat"}), Words{"status"});
    EXPECT_FALSE(Offers({"-d", ""}, "status"));
}

TEST_P(Completing, OffersGroupsOfDevices) {
    const Words groups = {"@rack-1", "@rack-2"};
    EXPECT_EQ(Candidates({"-d", "@"}), groups);
    // bash takes the names apart, but replaces the whole.
    const bool isBash = GetParam().name == "bash";
    EXPECT_EQ(
        Candidates(isBash ? Words{"-d", "@", "rack-1", "-d", "@", "rack"} : Words{"-d", "@rack-1", "-d", "@rack"}),
        groups);
    EXPECT_EQ(Candidates(isBash ? Words{"-d", "@", "rack-1", "stat"} : Words{"-d", "@rack-1", "stat"}),
              Words{"status"});
}

TEST_P(Completing, OffersTheNamesOfProperties) {
    EXPECT_TRUE(Offers({"get", "output.a"}, "output.aspect-ratio"));
    EXPECT_TRUE(Offers({"-d", "127.0.0.1", "get", "proc-amp.gain", "device.n"}, "device.name"));
    EXPECT_TRUE(Offers({"set", "output.a"}, "output.aspect-ratio"));
    EXPECT_FALSE(Offers({"set", "device.n"}, "device.name"));
}

TEST_P(Completing, OffersWordsWhereAValueIsExpected) {
    const Words ratios = Candidates({"set", "output.aspect-ratio", ""});
    EXPECT_NE(std::find(ratios.begin(), ratios.end(), "LetterBox"), ratios.end());
    EXPECT_EQ(std::find(ratios.begin(), ratios.end(), "output.aspect-ratio"), ratios.end());
    EXPECT_TRUE(Offers({"set", "output.aspect-ratio", "LetterBox", "output.v"}, "output.video-mode"));
}

TEST_P(Completing, OffersWhatTheOtherCommandsAccept) {
    EXPECT_EQ(Candidates({"preset", "re"}), Words{"recall"});
    EXPECT_EQ(Candidates({"completion", "z"}), Words{"zsh"});
}

TEST_P(Completing, OffersWordsWithBlanksAsOneEach) {
    const std::string mode = GetParam().name == "bash" ? "2K\\ DCI\\ 24p" : "2K DCI 24p";
    EXPECT_TRUE(Offers({"set", "input.video-mode", "2K"}, mode));
    // As people type them: the backslash before a blank is itself escaped where the test's script needs that.
    const std::string begun = GetParam().name == "fish" ? "2K\\ DCI\\ 2" : "2K\\\\\\ DCI\\\\\\ 2";
    EXPECT_TRUE(Offers({"set", "input.video-mode", begun}, mode));
}

TEST_P(Completing, LeavesFilesToTheShell) {
    const TemporaryFolder folder;
    const std::string file = folder.Make("settings.txt", "");
    const Words files = Candidates({"load", folder.PathOf("set")});
    EXPECT_EQ(files.at(0), GetParam().name == "fish" ? file : "<file>");
}

INSTANTIATE_TEST_SUITE_P(Shells, Completing,
                         testing::Values(Shell{"bash", "bash --norc", AskBash}, Shell{"zsh", "zsh -f", AskZsh},
                                         Shell{"fish", "fish --no-config", AskFish}),
                         [](const auto& shell) { return shell.param.name; });

}  // namespace
}  // namespace Morquil::Testing
