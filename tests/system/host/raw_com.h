// COM as seen by a host without the library's header: identifiers, slots and results.
#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "tests/kit/four_characters.h"

// How slots are called: on 32-bit Windows the callee takes its arguments off the stack.
#ifdef _WIN32
#define MORQUIL_SLOT __stdcall
#else
#define MORQUIL_SLOT
#endif

namespace Morquil::Testing {

using Result = std::int32_t;

inline constexpr Result ok = 0;
inline constexpr Result okFalse = 1;
inline constexpr Result notImplemented = static_cast<Result>(0x80004001U);
inline constexpr Result noInterface = static_cast<Result>(0x80004002U);
inline constexpr Result nullPointer = static_cast<Result>(0x80004003U);
inline constexpr Result failed = static_cast<Result>(0x80004005U);
inline constexpr Result invalidArgument = static_cast<Result>(0x80070057U);

struct Guid {
    std::uint32_t first;
    std::uint16_t second;
    std::uint16_t third;
    std::uint8_t rest[8];
};

/// From the form {7FC720E3-B8C6-4A7C-8CAE-AF5DCB3E4E4A}.
Guid ToGuid(const char* text);

/// The reverse of `FourCharacters`.
std::string FourCharacterText(std::int32_t code);

namespace Iid {
inline constexpr const char* unknown = "{00000000-0000-0000-C000-000000000046}";
inline constexpr const char* classFactory = "{00000001-0000-0000-C000-000000000046}";
inline constexpr const char* device = "{67033BF3-E4CF-43C0-BEA0-FF9860CB6856}";
inline constexpr const char* iterator = "{E5F4475C-9749-4AF5-A3C8-7D9D7BD0C274}";
inline constexpr const char* discovery = "{B1234AF2-BA89-44DE-B8C9-1240F3AFF6E7}";
inline constexpr const char* inputConfiguration = "{E99FB789-A6DB-49DC-A03B-48FA333D1D9A}";
inline constexpr const char* outputConfiguration = "{468A88CC-C0CA-4DF3-8EE0-A0B7821D0D07}";
inline constexpr const char* videoProcAmp = "{754E21BF-E019-474F-AAEE-17CB60788A38}";
inline constexpr const char* colorCorrection = "{2BB020D2-E994-4FB8-BE48-B22D0C90B941}";
inline constexpr const char* videoClip = "{486C3089-63D1-4B6A-B07C-78D81E62ED49}";
inline constexpr const char* aspectFill = "{6189C956-E143-4EAD-BAE6-80F1A1C1DB34}";
inline constexpr const char* noiseReduction = "{469F8C53-3735-4166-9B42-BEA66B4EA8AA}";
inline constexpr const char* testPattern = "{EBFF89FF-042C-4A5D-8394-A0A89A2E25D6}";
inline constexpr const char* videoAdvanced = "{867D4E60-2B21-4A86-BFCF-0DA1EE934BAF}";
inline constexpr const char* timecode = "{738389EE-45EF-4FB0-8D34-9449ABCB7C62}";
inline constexpr const char* closedCaption = "{AC2F0FAF-4049-4D52-B3D7-7B1A9BF0E900}";
inline constexpr const char* videoIndex = "{A736D5B9-6DDD-45B4-A61A-010593AF7783}";
inline constexpr const char* reference = "{32014A9F-88CB-43AA-B78D-DF8A460D2571}";
inline constexpr const char* variableAspectRatio = "{C54A36BB-7488-4EDE-A4DE-00A92AB604D7}";
inline constexpr const char* audioMapping = "{FAED7527-BE09-4C53-933B-1070D31339FE}";
inline constexpr const char* mode3d = "{D3F6998D-4E03-4170-A3CA-5714E270413F}";
inline constexpr const char* align = "{01799EFD-955F-41F1-9248-16F56BC873D9}";
inline constexpr const char* networkConfig = "{0EDE1456-70BB-4892-BE9D-D926A4A3BB48}";
inline constexpr const char* deviceFilenames = "{DA42F536-EB5B-483F-8DFD-F9D927931857}";
inline constexpr const char* preset = "{622C76BB-DBEA-4145-82AF-D4410590EA6F}";
}  // namespace Iid

/// The only class.
inline constexpr const char* discoveryClass = "{1E7BE91D-FAC6-4CDE-B52E-68844DF364F6}";

/// One reference to an object of the library, whose methods are called by their slots.
class RawObject {
public:
    RawObject() = default;
    /// Takes over the caller's reference.
    explicit RawObject(void* object) : object_(object) {}
    RawObject(RawObject&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    RawObject& operator=(RawObject&& other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~RawObject() { Release(); }

    /// The result of slot `slot`, called with just these arguments.
    template <class... Arguments>
    Result Call(int slot, Arguments... arguments) const {
        return As<Result, Arguments...>(slot)(object_, arguments...);
    }

    /// Slots 0 to 2. `QueryInterface` returns nothing if the object has no such interface.
    RawObject QueryInterface(const char* iid) const;
    std::uint32_t AddRef() const { return As<std::uint32_t>(1)(object_); }
    /// Releases one of several references; this one stays.
    std::uint32_t ReleaseOne() const { return As<std::uint32_t>(2)(object_); }
    /// Releases this reference. Returns the remaining count.
    std::uint32_t Release();
    /// The count without changing it.
    std::uint32_t References() const;

    explicit operator bool() const { return object_ != nullptr; }
    void* Get() const { return object_; }

private:
    using AnyFunction = void (*)();

    template <class Answer, class... Arguments>
    using Function = Answer(MORQUIL_SLOT*)(void*, Arguments...);
    template <class Answer, class... Arguments>
    Function<Answer, Arguments...> As(int slot) const {
        return reinterpret_cast<Function<Answer, Arguments...>>((*static_cast<AnyFunction* const*>(object_))[slot]);
    }

    void* object_ = nullptr;
};

}  // namespace Morquil::Testing
