// The scripts that complete the command line name all that there is to name.
#include <gtest/gtest.h>

#include "command/completion.h"
#include "command/options.h"
#include "command/property.h"

namespace Morquil::Test {
namespace {

TEST(Completion, KnowsEveryPropertyAndWordInEveryShell) {
    for (const char* const shell : {"bash", "zsh", "fish"}) {
        const std::string script = Command::CompletionScript(shell);
        for (const Command::Property& property : Command::AllProperties()) {
            EXPECT_NE(script.find(property.name), std::string::npos) << shell << ": " << property.name;
            for (const Command::NamedValue& named :
                 property.IsWritable() ? property.type.words : decltype(property.type.words)()) {
                EXPECT_NE(script.find(named.word), std::string::npos) << shell << ": " << named.word;
            }
        }
    }
}

TEST(Completion, KnowsEveryCommandAndOptionInEveryShell) {
    const Command::Grammar grammar = Command::CommandLineGrammar();
    for (const char* const shell : {"bash", "zsh", "fish"}) {
        const std::string script = Command::CompletionScript(shell);
        for (const Command::Offered& command : grammar.commands) {
            EXPECT_NE(script.find(command.name), std::string::npos) << shell << ": " << command.name;
        }
        for (const Command::Offered& option : grammar.options) {
            EXPECT_NE(script.find(option.name.substr(2)), std::string::npos) << shell << ": " << option.name;
        }
    }
}

}  // namespace
}  // namespace Morquil::Test
