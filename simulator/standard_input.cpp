#include "simulator/standard_input.h"

#include <unistd.h>

#include <array>
#include <thread>
#include <utility>

namespace Morquil::Simulator {

namespace {

/// What a line may hold at most: nobody types more, and memory has an end.
constexpr std::size_t longestInputLine = 65536;

void ReadLines(const std::function<void(std::string)>& onLine) {
    std::array<char, 4096> piece{};
    std::string line;
    // Not the buffered stream: its lock, which a waiting reader holds, is wanted when the program ends.
    for (auto length = read(STDIN_FILENO, piece.data(), piece.size()); length > 0;
         length = read(STDIN_FILENO, piece.data(), piece.size())) {
        for (const char character : std::string_view(piece.data(), static_cast<std::size_t>(length))) {
            if (character == '\n') {
                onLine(std::exchange(line, {}));
            } else if (line.size() < longestInputLine) {
                line += character;
            }
        }
    }
    if (!line.empty()) {
        onLine(std::move(line));
    }
}

}  // namespace

void ReadStandardInput(std::function<void(std::string)> onLine) {
    std::thread([onLine = std::move(onLine)] { ReadLines(onLine); }).detach();
}

}  // namespace Morquil::Simulator
