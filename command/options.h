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

/// A name on the command line and what it is good for, for the completion of shells.
struct Offered {
    std::string name;
    std::string summary;
    std::vector<std::string> words = {};  // what may follow it
    std::string letter = {};              // an option's short name without its hyphen, or empty
    bool takesValue = false;              // the word behind an option is its value
};
struct Grammar {
    std::vector<Offered> commands;
    std::vector<Offered> options;
};

struct ParsedLine {
    Options options;
    std::string said;  // what was asked for instead of a command, for standard output
};

/// `arguments` without the program's name. `defaultAddress` is where the device is if the line does not say.
/// Throws: UsageFailure.
ParsedLine ParseCommandLine(std::vector<std::string> arguments, const std::string& defaultAddress);

/// All that the command line knows.
Grammar CommandLineGrammar();

}  // namespace Morquil::Command
