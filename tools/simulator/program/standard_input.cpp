#include "simulator/program/standard_input.h"

#include <unistd.h>

#include <array>
#include <thread>
#include <utility>

#include "simulator/program/input_lines.h"

namespace Morquil::Simulator {

namespace {

void ReadLines(std::function<void(std::string)> onLine) {
    std::array<char, 4096> piece{};
    InputLines lines(std::move(onLine));
    // Not the buffered stream: a waiting reader holds its lock, which the program needs when it ends.
    for (auto length = read(STDIN_FILENO, piece.data(), piece.size()); length > 0;
         length = read(STDIN_FILENO, piece.data(), piece.size())) {
        lines.Feed({piece.data(), static_cast<std::size_t>(length)});
    }
    lines.End();
}

}  // namespace

void ReadStandardInput(std::function<void(std::string)> onLine) {
    std::thread([onLine = std::move(onLine)]() mutable { ReadLines(std::move(onLine)); }).detach();
}

}  // namespace Morquil::Simulator
