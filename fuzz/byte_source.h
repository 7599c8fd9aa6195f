#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace Morquil::Fuzz {

/// Turns the fuzzer's bytes into values, one after the other. After the last byte all values are 0.
class ByteSource {
public:
    explicit ByteSource(std::string_view bytes) : rest_(bytes) {}

    std::uint8_t Byte() { return Number<std::uint8_t>(); }
    bool Flag() { return (Byte() & 1) != 0; }

    /// Any bit pattern.
    template <class T>
    T Number() {
        T number{};
        const std::string_view bytes = Take(sizeof number);
        std::memcpy(&number, bytes.data(), bytes.size());
        return number;
    }

    /// A number that is often near 0, where words and limits are.
    template <class T>
    T LikelyNumber() {
        return Flag() ? static_cast<T>(Number<std::int8_t>()) : Number<T>();
    }

    /// At most 255 bytes.
    std::string Text() {
        const std::size_t length = Byte();
        return std::string(Take(length));
    }

private:
    std::string_view Take(std::size_t wanted) {
        const std::string_view taken = rest_.substr(0, wanted);
        rest_.remove_prefix(taken.size());
        return taken;
    }

    std::string_view rest_;
};

}  // namespace Morquil::Fuzz
