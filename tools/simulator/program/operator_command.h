#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

#include "simulator/program/simulation.h"
#include "simulator/program/targets.h"

namespace Morquil::Simulator {

enum class CommandKind {
    Set,
    Lock,
    Unlock,
    Drop,
    DropMidBlock,
    Offline,
    Online,
    Silent,
    Speak,
    AcknowledgeOn,
    AcknowledgeOff,
    RefuseOn,
    RefuseOff,
    Garbage,
    WaitForHost,
    WaitForNoHost,
    Status,
    Help,
    Quit
};

/// A command of the operator, from a script or typed in.
struct OperatorCommand {
    CommandKind kind = CommandKind::Help;
    std::string text;  // as written, without its time and devices
    Targets targets = {};
};

/// A parsed command, or why the text is not a command.
struct CommandReading {
    std::optional<OperatorCommand> command;
    std::string error;
};
CommandReading ReadCommand(std::string_view text);

/// Whether it concerns devices, and not the whole program.
constexpr bool IsForDevices(CommandKind kind) {
    return kind != CommandKind::Help && kind != CommandKind::Quit;
}

/// A list of all commands for people, one on each line.
std::string CommandHelp();

/// Carries out a command that concerns a device and its lines. The program itself handles everything else.
PanelOutcome CarryOut(const OperatorCommand& command, Simulation& simulation, std::chrono::milliseconds now);

}  // namespace Morquil::Simulator
