#include "simulator/streams/console.h"

#include "simulator/streams/blocking_output.h"

namespace Morquil::Simulator {

namespace {

std::string ErrorLine(const std::string& text) {
    return "morquil-sim: " + text + "\n";
}

}  // namespace

Console::Console()
    : writer_({.write =
                   [](const OutputPiece& piece) {
                       WriteCompletely(piece.stream, piece.text);
                       return true;  // a closed stream does not silence the other one
                   },
               .noteDropped =
                   [](std::size_t count) {
                       return OutputPiece{ErrorLine("dropped " + std::to_string(count) + " unread messages"),
                                          standardError};
                   }},
              pendingLimit) {}

void Console::PrintError(const std::string& text) {
    writer_.Write({ErrorLine(text), standardError});
}

}  // namespace Morquil::Simulator
