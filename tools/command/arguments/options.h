#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace Morquil::Command {

/// What the command line asks for.
struct Options {
    /// The name of the command. Empty if the parser has already produced the answer, for example for --help.
    std::string command;

    std::string address;
    std::chrono::milliseconds timeout{5000};
    bool isJson = false;
    bool isTraced = false;
    bool reconnects = false;
    bool isPartial = false;

    std::vector<std::string> words;  // what follows the command: names, values, a file, a shell
};

/// An option, described for shell completion.
struct OptionForm {
    std::string name;  // "--device"
    std::string summary;
    std::string letter;       // its short name without the hyphen; may be empty
    bool takesValue = false;  // the next word is its value
};

/// The program or one of its commands, and what may follow its name.
struct Grammar {
    std::string name;
    std::string summary;
    std::vector<OptionForm> options;
    std::vector<Grammar> commands;
};

struct ParsedLine {
    Options options;
    std::string output;  // text for standard output if help or the version was asked for instead of a command
};

/// Parses `arguments`, which exclude the program's name. `defaultAddress` is the device's address if the line does not
/// give one.
/// Throws: UsageFailure.
ParsedLine ParseCommandLine(std::vector<std::string> arguments, const std::string& defaultAddress);

/// Everything that the command line accepts. The program's own options may also follow each command.
Grammar CommandLineGrammar();

}  // namespace Morquil::Command
