// Candidates for the next word of a command line.
#include "command/completion/completion.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "command/arguments/options.h"
#include "command/properties/property.h"
#include "tests/kit/temporary_folder.h"
#include "tests/system/command/invocation.h"

namespace Morquil::Testing {
namespace {

using Command::Complete;
using Command::ExitCode;
using Command::Property;
using Words = std::vector<std::string>;

Words Offered(const Words& line, const Words& groups = {}) {
    Words words;
    for (const Command::Candidate& candidate : Complete(line, groups)) {
        words.push_back(candidate.word);
    }
    return words;
}

template <class Condition>
Words NamesWith(Condition condition) {
    Words names;
    for (const Property& property : Command::AllProperties()) {
        if (condition(property)) {
            names.push_back(property.name);
        }
    }
    return names;
}

Words WordsOf(const Property& property) {
    if (property.type.kind == Command::Kind::YesNo) {
        return {"true", "false"};
    }
    Words words;
    for (const Command::NamedValue& named : property.type.words) {
        words.emplace_back(named.word);
    }
    return words;
}

bool Holds(const Words& words, const std::string& word) {
    return std::find(words.begin(), words.end(), word) != words.end();
}

TEST(Completion, OffersEveryCommandAndOptionWithItsPurpose) {
    const Command::Grammar grammar = Command::CommandLineGrammar();
    EXPECT_EQ(Offered({""}).size(), grammar.commands.size());
    for (const Command::Grammar& command : grammar.commands) {
        EXPECT_EQ(Offered({command.name}), Words{command.name});
        EXPECT_NE(Complete({command.name}).at(0).about, "") << command.name;
        for (const Command::OptionForm& option : command.options) {
            EXPECT_EQ(Offered({command.name, option.name}), Words{option.name});
            EXPECT_NE(Complete({command.name, option.name}).at(0).about, "") << option.name;
        }
    }
    for (const Command::OptionForm& option : grammar.options) {
        EXPECT_EQ(Offered({option.name}).at(0), option.name);
        EXPECT_EQ(Offered({"get", option.name}).at(0), option.name);
    }
}

TEST(Completion, OffersAnOptionOfOneCommandAfterItOnly) {
    EXPECT_TRUE(Holds(Offered({"watch", "--"}), "--wait-reconnect"));
    EXPECT_FALSE(Holds(Offered({"get", "--"}), "--wait-reconnect"));
    EXPECT_FALSE(Holds(Offered({"--"}), "--wait-reconnect"));
}

TEST(Completion, OffersTheNamesThatACommandAccepts) {
    const Words readable = NamesWith([](const Property& property) { return property.IsReadable(); });
    EXPECT_EQ(Offered({"get", ""}), readable);
    Words others = readable;
    std::erase(others, "device.name");
    EXPECT_EQ(Offered({"get", "Device.Name", ""}), others);
    EXPECT_EQ(Offered({"watch", ""}), readable);
    EXPECT_EQ(Offered({"ranges", ""}), NamesWith([](const Property& property) { return property.offer != nullptr; }));
    EXPECT_EQ(Offered({"set", ""}), NamesWith([](const Property& property) { return property.IsWritable(); }));
    EXPECT_EQ(Offered({"list", ""}), NamesWith([](const Property&) { return true; }));
}

TEST(Completion, OffersTheWordsOfEveryPropertyThatCanBeSet) {
    for (const Property& property : Command::AllProperties()) {
        if (property.IsWritable() && property.type.kind != Command::Kind::Nothing) {
            EXPECT_EQ(Offered({"set", property.name, ""}), WordsOf(property)) << property.name;
        }
    }
}

TEST(Completion, KnowsWhereANameAndWhereAValueIsExpected) {
    EXPECT_EQ(Offered({"set", "proc-amp.gain", "-3", "proc-amp.hu"}), Words{"proc-amp.hue"});
    EXPECT_EQ(Offered({"set", "proc-amp.gain", "proc"}), Words{});
    EXPECT_EQ(Offered({"set", "timecode.start", "proc-amp.hu"}), Words{"proc-amp.hue"});
    EXPECT_EQ(Offered({"set", "--json", "output.aspect-ratio", "-t", "3", "Let"}), Words{"LetterBox"});
    EXPECT_EQ(Offered({"set", "network.name", "--", "--json", "proc-amp.hu"}), Words{"proc-amp.hue"});
}

TEST(Completion, OffersNothingForTheValueOfAnOption) {
    for (const char* const option : {"-d", "--device", "-t", "--timeout"}) {
        EXPECT_EQ(Offered({option, ""}), Words{}) << option;
        EXPECT_EQ(Offered({"get", option, ""}), Words{}) << option;
        EXPECT_EQ(Offered({option, "=", "1", "stat"}), Words{"status"}) << option;
    }
}

TEST(Completion, OffersGroupsWhereDevicesAreNamed) {
    const Words groups = {"rack-1", "rack-2", "stage"};
    const Words racks = {"@rack-1", "@rack-2"};
    EXPECT_EQ(Offered({"-d", "@rack"}, groups), racks);
    EXPECT_EQ(Offered({"get", "--device", "=", "@rack"}, groups), racks);
    EXPECT_EQ(Offered({"-d", "x", "copy", "@s"}, groups), Words{"@stage"});
    EXPECT_EQ(Offered({"-d", ""}, groups).size(), groups.size());
    EXPECT_EQ(Offered({"-t", ""}, groups), Words{});
    EXPECT_EQ(Offered({"get", "@"}, groups), Words{});
}

TEST(Completion, LeavesTheFileOfDevicesToTheShell) {
    EXPECT_EQ(Offered({"--devices", "ra"}), Words{":files"});
}

TEST(Completion, ReadsTheGroupsFromTheirFile) {
    const TemporaryFolder folder;
    const std::string file = folder.Make("groups", "rack-1: 10.0.0.1\n");
    const Words line = {"complete", "--", "-d", ""};
    EXPECT_EQ(RunCommand("nowhere.invalid", line, {.groupsFile = file}).out, "@rack-1\n");
    EXPECT_EQ(RunCommand("nowhere.invalid", line, {.groupsFile = folder.PathOf("none")}).out, "");
}

TEST(Completion, OffersNoOptionAfterTheMarkThatEndsThem) {
    EXPECT_EQ(Offered({"get", "--", "-"}), Words{});
}

TEST(Completion, IgnoresCase) {
    EXPECT_EQ(Offered({"set", "OUTPUT.ASPECT-R"}), Words{"output.aspect-ratio"});
    EXPECT_EQ(Offered({"set", "OUTPUT.ASPECT-RATIO", "letter"}), Words{"LetterBox"});
}

TEST(Completion, LeavesFilesToTheShell) {
    EXPECT_EQ(Offered({"save", "/tm"}), Words{":files"});
    EXPECT_EQ(Offered({"load", ""}), Words{":files"});
    EXPECT_EQ(Offered({"load", "settings.txt", ""}), Words{});
}

TEST(Completion, OffersWhatTheOtherCommandsAccept) {
    EXPECT_EQ(Offered({"preset", ""}), (Words{"save", "recall", "name"}));
    EXPECT_EQ(Offered({"preset", "name", ""}), (Words{"1", "2", "3", "4", "5", "6"}));
    EXPECT_EQ(Offered({"completion", ""}), (Words{"bash", "zsh", "fish"}));
    EXPECT_EQ(Offered({"status", ""}), Words{});
}

TEST(Completion, OffersNothingForWhatItDoesNotUnderstand) {
    EXPECT_EQ(Offered({"dance", ""}), Words{});
    EXPECT_EQ(Offered({"get", "--no-such-option", "device.na"}), Words{"device.name"});
    EXPECT_EQ(Offered({"set", "no.such.name", ""}), Words{});
}

TEST(Completion, NeedsNoDevice) {
    const Outcome outcome = RunCommand("nowhere.invalid", {"complete", "--", "-d", "x", "stat"});
    EXPECT_EQ(outcome.code, ExitCode::Done);
    EXPECT_EQ(outcome.out, "status\tShow the device, its input and its output\n");
    EXPECT_EQ(outcome.err, "");
}

TEST(Completion, IsNotInTheHelp) {
    EXPECT_EQ(RunCommand("127.0.0.1", {"--help"}).out.find("complete "), std::string::npos);
}

}  // namespace
}  // namespace Morquil::Testing
