#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/program/simulation.h"

namespace Morquil::Simulator {

enum class CommandKind {
    Set,
    Lock,
    Unlock,
    Drop,
    DropMidBlock,
    Silent,
    Speak,
    AcknowledgeOn,
    AcknowledgeOff,
    RefuseOn,
    RefuseOff,
    Garbage,
    WaitForHost,
    WaitForNoHost,
    Help,
    Quit
};

/// What somebody orders who looks after the device, by a script or by hand.
struct OperatorCommand {
    CommandKind kind = CommandKind::Help;
    std::string text;  // as it was written
};

/// A command, or why the text is none.
struct CommandReading {
    std::optional<OperatorCommand> command;
    std::string complaint;
};
CommandReading ReadCommand(std::string_view text);

/// All commands, for people: a line for each.
std::string CommandHelp();

/// Carries out a command that concerns the device and its lines. Waiting, helping and ending are the program's.
PanelOutcome CarryOut(const OperatorCommand& command, Simulation& simulation, std::chrono::milliseconds now);

}  // namespace Morquil::Simulator
