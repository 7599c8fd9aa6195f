#include "tests/system/simulator_program/started_program.h"

#include <algorithm>
#include <array>
#include <utility>

#ifndef _WIN32
#include <sys/wait.h>
#endif

namespace Morquil::Testing {
namespace {

#ifdef _WIN32
// The shell reads a slash as the start of an option, and removes the outermost quotes.
std::string CommandLine(const std::string& arguments) {
    std::string path = MORQUIL_SIMULATOR_PATH;
    std::replace(path.begin(), path.end(), '/', '\\');
    return "\"\"" + path + "\"" + arguments + " 2>&1 <NUL\"";
}
std::FILE* Start(const std::string& command) {
    return _popen(command.c_str(), "r");
}
int End(std::FILE* output) {
    return _pclose(output);
}
#else
std::string CommandLine(const std::string& arguments) {
    return "exec \"" MORQUIL_SIMULATOR_PATH "\"" + arguments + " 2>&1 </dev/null";
}
std::FILE* Start(const std::string& command) {
    return popen(command.c_str(), "re");
}
int End(std::FILE* output) {
    const int status = pclose(output);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}
#endif

}  // namespace

StartedProgram::StartedProgram(const std::vector<std::string>& options) {
    std::string arguments;
    for (const std::string& option : options) {
        arguments += " \"" + option + "\"";
    }
    output_ = Start(CommandLine(arguments));
}

StartedProgram::~StartedProgram() {
    AwaitEnd();
}

std::string StartedProgram::NextLine() {
    std::array<char, 1024> line{};
    if (output_ == nullptr || std::fgets(line.data(), static_cast<int>(line.size()), output_) == nullptr) {
        return {};
    }
    const std::string text = line.data();
    return text.substr(0, text.find_first_of("\r\n"));
}

int StartedProgram::AwaitEnd() {
    if (output_ == nullptr) {
        return -1;
    }
    std::array<char, 1024> rest{};
    while (std::fread(rest.data(), 1, rest.size(), output_) > 0) {
    }
    return End(std::exchange(output_, nullptr));
}

ProgramRun RunProgram(const std::vector<std::string>& options) {
    StartedProgram program(options);
    ProgramRun run;
    for (std::string line = program.NextLine(); !line.empty(); line = program.NextLine()) {
        run.output += line + "\n";
    }
    run.exitStatus = program.AwaitEnd();
    return run;
}

}  // namespace Morquil::Testing
