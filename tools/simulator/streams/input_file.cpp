#include "simulator/streams/input_file.h"

#include <array>
#include <fstream>

namespace Morquil::Simulator {

FileReading ReadInputFile(const std::string& name, std::size_t limit) {
    std::ifstream stream(name, std::ios::binary);
    FileReading file;
    std::array<char, 4096> piece{};
    while (stream && file.content.size() <= limit) {
        stream.read(piece.data(), piece.size());
        file.content.append(piece.data(), static_cast<std::size_t>(stream.gcount()));
    }
    if (file.content.size() > limit) {
        return {{}, "is larger than " + std::to_string(limit / 1024 / 1024) + " MiB, the limit for such a file"};
    }
    // A folder can be opened, but not read to its end.
    return stream.eof() ? file : FileReading{{}, "cannot be read"};
}

}  // namespace Morquil::Simulator
