#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

namespace Morquil::Command {

/// What the command line asks for.
struct Options {
    /// The name of the command. Empty if the parser has already produced the answer, for example for --help.
    std::string command;

    std::vector<std::string> devices;  // as written: addresses and groups; empty for the default
    std::string devicesFile;           // names a file with more of them; empty for none
    std::string address;               // of the device that a command works with

    std::chrono::milliseconds timeout{5000};
    bool isJson = false;
    bool isTraced = false;
    bool reconnects = false;
    bool isPartial = false;
    bool isValueOnly = false;
    bool isDryRun = false;

    std::vector<std::string> words;  // what follows the command: names, values, a file, a shell
};

/// An option, described for help and shell completion.
struct OptionForm {
    std::string name;  // "--device"
    std::string summary;
    std::string letter;       // its short name without the hyphen; may be empty
    std::string valueName;    // "ADDRESS"; empty if it takes no value
    bool takesValue = false;  // the next word is its value
};

/// The program or one of its commands, and what may follow its name.
struct Grammar {
    std::string name;
    std::string summary;
    std::vector<OptionForm> options;
    std::vector<Grammar> commands;
    std::string words;       // "NAME VALUE..."; empty if nothing follows
    std::string wordsAbout;  // what they are
    std::vector<std::string> examples;
};

struct ParsedLine {
    Options options;
    std::string output;  // text for standard output if help or the version was asked for instead of a command
};

/// Parses `arguments`, which exclude the program's name. Help is made for lines of `width` characters.
/// Throws: UsageFailure.
ParsedLine ParseCommandLine(std::vector<std::string> arguments, std::size_t width = 80);

/// Everything that the command line accepts. The program's own options may also follow each command.
Grammar CommandLineGrammar();

}  // namespace Morquil::Command
