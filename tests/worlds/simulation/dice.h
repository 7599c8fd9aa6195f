// The source of chance for the simulated worlds.
#pragma once

#include <cstdint>

namespace Morquil::Testing::Worlds {

class Dice {
public:
    virtual ~Dice() = default;

    /// A number from 0 to `count` - 1.
    virtual std::uint32_t Below(std::uint32_t count) = 0;
    /// True in one of `count` cases.
    bool OneIn(std::uint32_t count) { return Below(count) == count - 1; }
    /// One of the elements of an array.
    template <class Elements>
    auto& OneOf(Elements& elements) {
        return elements[Below(static_cast<std::uint32_t>(elements.size()))];
    }
};

/// The same throws for the same seed on every system.
class SeededDice final : public Dice {
public:
    explicit SeededDice(std::uint64_t seed) : state_(seed) {}

    std::uint32_t Below(std::uint32_t count) override {
        state_ += 0x9E3779B97F4A7C15U;
        std::uint64_t mixed = state_;
        mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
        mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
        return static_cast<std::uint32_t>((mixed ^ (mixed >> 31)) % count);
    }

private:
    std::uint64_t state_;
};

}  // namespace Morquil::Testing::Worlds
