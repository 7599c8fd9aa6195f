#include "tests/system/host/raw_com.h"

#include <cstdlib>

namespace Morquil::Testing {
namespace {

std::uint32_t Hexadecimal(const char* text, int length) {
    return static_cast<std::uint32_t>(
        std::strtoul(std::string(text, static_cast<std::size_t>(length)).c_str(), nullptr, 16));
}

}  // namespace

Guid ToGuid(const char* text) {
    constexpr int placesOfRest[] = {20, 22, 25, 27, 29, 31, 33, 35};
    Guid guid{Hexadecimal(text + 1, 8),
              static_cast<std::uint16_t>(Hexadecimal(text + 10, 4)),
              static_cast<std::uint16_t>(Hexadecimal(text + 15, 4)),
              {}};
    for (int index = 0; index < 8; ++index) {
        guid.rest[index] = static_cast<std::uint8_t>(Hexadecimal(text + placesOfRest[index], 2));
    }
    return guid;
}

std::string FourCharacterText(std::int32_t code) {
    std::string text;
    for (const int shift : {24, 16, 8, 0}) {
        text += static_cast<char>(static_cast<std::uint32_t>(code) >> shift & 0xff);
    }
    return text;
}

RawObject RawObject::QueryInterface(const char* iid) const {
    const Guid guid = ToGuid(iid);
    void* found = nullptr;
    return RawObject(Call(0, &guid, &found) == ok ? found : nullptr);
}

std::uint32_t RawObject::Release() {
    return object_ != nullptr ? As<std::uint32_t>(2)(std::exchange(object_, nullptr)) : 0;
}

std::uint32_t RawObject::References() const {
    AddRef();
    return ReleaseOne();
}

}  // namespace Morquil::Testing
