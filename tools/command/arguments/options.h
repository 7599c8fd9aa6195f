#pragma once

#include <chrono>
#include <string>
#include <vector>

namespace Morquil::Command {

/// What the command line asks for.
struct Options {
    /// Which command, by its name; empty when all has been said already, as by --help.
    std::string command;

    std::string address;
    std::chrono::milliseconds timeout{5000};
    bool isJson = false;
    bool isTraced = false;
    bool reconnects = false;

    std::vector<std::string> words;  // what follows the command: names, values, the file, the shell
};

/// An option, for the completion of shells.
struct OptionForm {
    std::string name;  // "--device"
    std::string summary;
    std::string letter;       // its short name without the hyphen, or empty
    bool takesValue = false;  // the next word is its value
};

/// The program or one of its commands: what may follow its name.
struct Grammar {
    std::string name;
    std::string summary;
    std::vector<OptionForm> options;
    std::vector<Grammar> commands;
};

struct ParsedLine {
    Options options;
    std::string said;  // what was asked for instead of a command, for standard output
};

/// `arguments` without the program's name. `defaultAddress` is where the device is if the line does not say.
/// Throws: UsageFailure.
ParsedLine ParseCommandLine(std::vector<std::string> arguments, const std::string& defaultAddress);

/// All that the command line knows. The program's own options may follow each command, too.
Grammar CommandLineGrammar();

}  // namespace Morquil::Command
