#pragma once

#include <emmintrin.h>

#include <bit>
#include <cstddef>
#include <cstdint>

namespace Morquil {

/// Sixteen bytes.
class Sse2Block {
public:
    using Marks = std::uint32_t;  // one bit per byte

    static constexpr std::size_t size = 16;

    explicit Sse2Block(const char* from) : bytes_(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from))) {}

    Marks Below(char limit) const {
        const __m128i highest = _mm_set1_epi8(static_cast<char>(limit - 1));
        return MarksOf(_mm_cmpeq_epi8(_mm_min_epu8(bytes_, highest), bytes_));
    }
    Marks Equal(char byte) const { return MarksOf(_mm_cmpeq_epi8(bytes_, _mm_set1_epi8(byte))); }

    static std::size_t First(Marks marks) { return static_cast<std::size_t>(std::countr_zero(marks)); }
    static Marks WithoutFirst(Marks marks, std::size_t count) { return marks >> count; }

private:
    static Marks MarksOf(__m128i truths) { return static_cast<Marks>(_mm_movemask_epi8(truths)); }

    __m128i bytes_;
};

}  // namespace Morquil
