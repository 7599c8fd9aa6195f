#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace Morquil::Testing {

/// The simulated device as a separate program. Its output can be read; its standard input is empty. The destructor
/// waits for its end; the test has to end it.
class StartedProgram {
public:
    /// Options must contain no quotes.
    explicit StartedProgram(const std::vector<std::string>& options);
    ~StartedProgram();
    StartedProgram(const StartedProgram&) = delete;
    StartedProgram& operator=(const StartedProgram&) = delete;

    /// The next line that it prints, without its end; empty if there is none.
    std::string NextLine();
    /// Reads everything up to its end. Returns: the exit status.
    int AwaitEnd();

private:
    std::FILE* output_ = nullptr;
};

/// Everything that a run of the program prints, errors included, and its exit status.
struct ProgramRun {
    std::string output;
    int exitStatus = -1;
};
ProgramRun RunProgram(const std::vector<std::string>& options);

}  // namespace Morquil::Testing
