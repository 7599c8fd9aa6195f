#pragma once

#include <atomic>
#include <string>
#include <vector>

namespace Morquil::Command {

/// The words of the command line, in UTF-8, without the program's name.
std::vector<std::string> CommandLineWords(int count, char** words);

/// Sets the flag when the user interrupts the program or it is asked to end. The second time the system ends it.
void NoteInterruption(std::atomic<bool>& flag);

/// Ends the program as the interruption would have: a shell that runs it in a loop ends the loop, too.
[[noreturn]] void EndInterrupted();

/// From here on writing to a pipe that nobody reads fails; it does not end the program.
void IgnoreBrokenPipes();

/// An environment variable, in UTF-8; empty when there is none.
std::string EnvironmentVariable(const char* name);

}  // namespace Morquil::Command
