#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>

namespace Morquil::Simulator {

/// Random garbage that is the same on every system for the same seed.
class Noise {
public:
    explicit Noise(std::uint32_t seed) : numbers_(seed) {}

    /// A number from 1 to `most`.
    std::size_t UpTo(std::size_t most) {
        // The standard fixes the generator's numbers, but not those of its distributions.
        return 1 + numbers_() % most;
    }

    /// Bytes of any value, then an empty line, so that the following text can be parsed again.
    std::string Garbage() {
        constexpr std::size_t most = 80;
        std::string text;
        for (std::size_t length = UpTo(most); length > 0; --length) {
            const char byte = static_cast<char>(static_cast<unsigned char>(numbers_() % 256));
            text += byte == '\n' ? '?' : byte;
        }
        // The "?" keeps a lone carriage return from making the line empty.
        return text + "?\n\n";
    }

private:
    std::mt19937 numbers_;
};

}  // namespace Morquil::Simulator
