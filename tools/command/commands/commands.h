#pragma once

#include <atomic>
#include <chrono>
#include <functional>
#include <string>
#include <vector>

#include "command/arguments/exit_code.h"
#include "command/arguments/options.h"
#include "command/commands/link.h"
#include "command/output/terminal.h"

namespace Morquil::Command {

/// What a command works with. Every command throws Failure when it cannot do its work.
struct Context {
    const Options& options;
    const Terminal& terminal;
    const Deadline deadline;
    /// Set from outside to end the command: by the user, or because its output cannot be written.
    const std::atomic<bool>& isInterrupted;
    /// Called before the library is used.
    const std::function<void()>& prepareLibrary;
    /// All devices that the command line names, and the file that holds the groups.
    const std::vector<std::string>& addresses;
    const std::string& groupsFile;
    /// A device that has been silent for so long does not answer any more.
    const std::chrono::milliseconds longestSilence;

    /// The same with other options, or also with another terminal.
    Context With(const Options& other) const { return With(other, terminal); }
    Context With(const Options& other, const Terminal& otherTerminal) const {
        return {other, otherTerminal, deadline, isInterrupted, prepareLibrary, addresses, groupsFile, longestSilence};
    }
};

// Show what the device has reported, and what the property table holds.
void ShowStatus(const Context& context);
void ShowValues(const Context& context);
void ShowRanges(const Context& context);
void ShowList(const Context& context);

// Send to the device.
void SetValues(const Context& context);
void SavePreset(const Context& context);
void RecallPreset(const Context& context);
void NamePreset(const Context& context);

// Compare devices with files and with each other, and make them the same.
void ShowDifferences(const Context& context);
void ApplyFile(const Context& context);
void CopySettings(const Context& context);

// Save and load settings as files.
void SaveSettings(const Context& context);
void LoadSettings(const Context& context);

void WatchChanges(const Context& context);
void ShowTop(const Context& context);

// For shells.
void WriteCompletion(const Context& context);
void WriteCandidates(const Context& context);

}  // namespace Morquil::Command
