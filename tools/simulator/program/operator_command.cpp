#include "simulator/program/operator_command.h"

#include <array>

#include "simulator/text/text_lines.h"

namespace Morquil::Simulator {

namespace {

struct CommandWord {
    CommandKind kind;
    std::string_view word;
    std::string_view arguments;
    std::string_view meaning;
};
// clang-format off
constexpr std::array<CommandWord, 19> commandWords{{
    {CommandKind::Set,            "set",              " BLOCK KEY VALUE", "turn a knob on the front panel: set VIDEO PROC AMP Gain 12"},
    {CommandKind::Lock,           "lock",             "", "switch the remote lock on, and notify the hosts"},
    {CommandKind::Unlock,         "unlock",           "", "switch the remote lock off, and notify the hosts"},
    {CommandKind::Drop,           "drop",             "", "hang up on all hosts"},
    {CommandKind::DropMidBlock,   "drop mid-block",   "", "hang up on all hosts in the middle of the next block"},
    {CommandKind::Offline,        "offline",          "", "hang up on all hosts, and refuse new ones"},
    {CommandKind::Online,         "online",           "", "accept hosts again"},
    {CommandKind::Silent,         "silent",           "", "send nothing except the preamble"},
    {CommandKind::Speak,          "speak",            "", "send again from now on"},
    {CommandKind::AcknowledgeOn,  "ack on",           "", "acknowledge blocks (the default)"},
    {CommandKind::AcknowledgeOff, "ack off",          "", "carry out blocks without acknowledging them"},
    {CommandKind::RefuseOn,       "nack on",          "", "refuse all blocks"},
    {CommandKind::RefuseOff,      "nack off",         "", "refuse only invalid blocks (the default)"},
    {CommandKind::Garbage,        "garbage",          "", "send all hosts some random bytes"},
    {CommandKind::WaitForHost,    "wait-for-host",    "", "wait until a host is connected"},
    {CommandKind::WaitForNoHost,  "wait-for-no-host", "", "wait until no host is connected"},
    {CommandKind::Status,         "status",           "", "print the address, and how many hosts are connected"},
    {CommandKind::Help,           "help",             "", "list the commands"},
    {CommandKind::Quit,           "quit",             "", "exit"},
}};
// clang-format on

/// Reduces blanks to one between words, and removes those at the ends.
std::string WithSingleBlanks(std::string_view text) {
    std::string words;
    for (const char character : Trimmed(text)) {
        const bool isBlank = character == ' ' || character == '\t';
        if (!isBlank) {
            words += character;
        } else if (!words.ends_with(' ')) {
            words += ' ';
        }
    }
    return words;
}

bool Matches(const CommandWord& command, std::string_view words) {
    if (command.arguments.empty()) {
        return EqualsIgnoringCase(words, command.word);
    }
    return StartsIgnoringCase(words, command.word) &&
           (words.size() == command.word.size() || words[command.word.size()] == ' ');
}

std::string AllWords() {
    std::string words;
    for (const CommandWord& command : commandWords) {
        words += words.empty() ? "" : ", ";
        words += command.word;
    }
    return words;
}

PanelOutcome SetRemoteLock(Simulation& simulation, const char* value, std::chrono::milliseconds now) {
    return simulation.UsePanel(std::string("set MORQUIL DEVICE Remote lock ") + value, now);
}

}  // namespace

CommandReading ReadCommand(std::string_view text) {
    const std::string words = WithSingleBlanks(text);
    for (const CommandWord& command : commandWords) {
        if (!Matches(command, words)) {
            continue;
        }
        std::string error = command.kind == CommandKind::Set ? PanelCommandProblem(text) : std::string();
        if (!error.empty()) {
            return {std::nullopt, std::move(error)};
        }
        return {OperatorCommand{.kind = command.kind, .text = std::string(Trimmed(text))}, {}};
    }
    return {std::nullopt, "unknown command \"" + words + "\"; commands are: " + AllWords()};
}

std::string CommandHelp() {
    constexpr std::size_t column = 24;
    std::string help;
    for (const CommandWord& command : commandWords) {
        std::string line = "  " + std::string(command.word) + std::string(command.arguments);
        line.resize(std::max(line.size() + 2, column), ' ');
        help += line + std::string(command.meaning) + "\n";
    }
    return help;
}

PanelOutcome CarryOut(const OperatorCommand& command, Simulation& simulation, std::chrono::milliseconds now) {
    Faults& faults = simulation.PresentFaults();
    // clang-format off
    switch (command.kind) {
        case CommandKind::Set:            return simulation.UsePanel(command.text, now);
        case CommandKind::Lock:           return SetRemoteLock(simulation, "true", now);
        case CommandKind::Unlock:         return SetRemoteLock(simulation, "false", now);
        case CommandKind::Offline:
        case CommandKind::Drop:           simulation.HangUp(now); break;
        case CommandKind::DropMidBlock:   simulation.HangUpMidBlock(); break;
        case CommandKind::Silent:         faults.silent = true; break;
        case CommandKind::Speak:          faults.silent = false; break;
        case CommandKind::AcknowledgeOn:  faults.neverAcknowledge = false; break;
        case CommandKind::AcknowledgeOff: faults.neverAcknowledge = true; break;
        case CommandKind::RefuseOn:       faults.refuseAll = true; break;
        case CommandKind::RefuseOff:      faults.refuseAll = false; break;
        case CommandKind::Garbage:        simulation.SendGarbage(now); break;
        case CommandKind::Online:
        case CommandKind::WaitForHost:
        case CommandKind::WaitForNoHost:
        case CommandKind::Status:
        case CommandKind::Help:
        case CommandKind::Quit:           break;
    }
    // clang-format on
    return {};
}

}  // namespace Morquil::Simulator
