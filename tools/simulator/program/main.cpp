#include <cstdlib>
#include <memory>

#include "platform/standard_streams.h"
#include "simulator/program/options.h"
#include "simulator/program/program.h"
#include "simulator/program/standard_input.h"

int main(int argumentCount, char** arguments) {
    using namespace Morquil::Simulator;
    if (!Morquil::OccupyStandardStreams()) {
        return EXIT_FAILURE;
    }
    int exitStatus = 0;
    const auto options = ReadOptions(argumentCount, arguments, exitStatus);
    if (!options) {
        return exitStatus;
    }
    // Shared with the thread that reads standard input, which may still pass on a line while the program ends.
    const auto program = std::make_shared<Program>(*options);
    exitStatus = program->Prepare();
    if (exitStatus != 0) {
        return exitStatus;
    }
    // Until here, a signal ends the process, even while it waits for a file. From here on, a signal ends `Run`, even if
    // it arrives before `Run` is called.
    program->EndOnSignals();
    exitStatus = program->Listen();
    if (exitStatus != 0) {
        return exitStatus;
    }
    ReadStandardInput([program](std::string line) { program->Submit(std::move(line)); });
    return program->Run();
}
