#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "fuzz/byte_source.h"
#include "tests/worlds/simulation/dice.h"

namespace Morquil::Fuzz {

/// Whether a throw takes more than one byte to record.
inline bool IsLong(std::uint32_t count) {
    return count > 256;
}

/// Takes its throws from the fuzzer's bytes.
class WrittenDice final : public Testing::Worlds::Dice {
public:
    explicit WrittenDice(std::string_view bytes) : bytes_(bytes) {}

    std::uint32_t Below(std::uint32_t count) override {
        const std::uint32_t number = IsLong(count) ? bytes_.Number<std::uint16_t>() : bytes_.Byte();
        return number % count;
    }

private:
    ByteSource bytes_;
};

/// Records the throws of seeded dice, so that written dice can repeat them.
class RecordingDice final : public Testing::Worlds::Dice {
public:
    explicit RecordingDice(std::uint64_t seed) : dice_(seed) {}

    std::uint32_t Below(std::uint32_t count) override {
        const std::uint32_t number = dice_.Below(count);
        const auto written = static_cast<std::uint16_t>(number);
        bytes_.append(reinterpret_cast<const char*>(&written), IsLong(count) ? 2 : 1);
        return number;
    }
    const std::string& Bytes() const { return bytes_; }

private:
    Testing::Worlds::SeededDice dice_;
    std::string bytes_;
};

}  // namespace Morquil::Fuzz
