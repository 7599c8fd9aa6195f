#pragma once

#include <cstddef>
#include <random>
#include <string>
#include <vector>

namespace Morquil::Testing {

/// What a broken or malicious device sends: the same for the same seed.
class HostileBytes {
public:
    explicit HostileBytes(unsigned seed) : numbers_(seed) {}

    /// At least `size` bytes, of every kind: noise, unknown blocks, endless lines, huge lists, conversions again and
    /// again, storms of acknowledgements, texts of every length, changes that make the host request what is available,
    /// and good blocks with corrupted bytes. Cut anywhere; the last piece ends every open block and acknowledges
    /// everything that the host has to send.
    std::vector<std::string> Round(std::size_t size);

private:
    std::size_t Below(std::size_t limit) { return numbers_() % limit; }
    std::string Times(std::size_t count, const std::string& text) const;
    std::string Kind(std::size_t kind);
    std::string Noise();
    std::string HugeList();
    std::string Conversions();
    std::string Storm();
    std::string Texts();
    std::string Changes();
    std::string SpoiltBlocks();
    std::vector<std::string> Cut(const std::string& bytes);

    std::mt19937 numbers_;
};

}  // namespace Morquil::Testing
