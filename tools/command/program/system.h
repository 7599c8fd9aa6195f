#pragma once

#include <atomic>
#include <string>
#include <vector>

namespace Morquil::Command {

/// The words of the command line, in UTF-8, without the program's name.
std::vector<std::string> CommandLineWords(int count, char** words);

/// Sets the flag when the user interrupts the program or it is asked to end. The second time, the program
/// ends at once.
void NoteInterruption(std::atomic<bool>& flag);

/// Ends the program as the interruption would have, so that a shell running it in a loop ends the loop too.
[[noreturn]] void EndInterrupted();

/// Makes writing to a pipe without a reader fail instead of ending the program.
void IgnoreBrokenPipes();

/// An environment variable, in UTF-8; empty if it is not set.
std::string EnvironmentVariable(const char* name);

/// Where the user keeps the configuration of programs.
std::string ConfigurationFolder();

}  // namespace Morquil::Command
