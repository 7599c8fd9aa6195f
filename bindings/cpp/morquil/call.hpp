// The building blocks of the generated functions: values that go into and come out of a call.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "MorquilAPI.h"
#include "MorquilDelivery.h"
#include "morquil/error.hpp"
#include "morquil/pointer.hpp"
#include "morquil/text.hpp"

namespace morquil {

/// Both ends are included.
template <class Number>
struct Range {
    Number min;
    Number max;
};

/// A value of an enumeration and the word that devices and people use for it.
template <class Value>
struct Word {
    std::string_view text;
    Value value;
};

/// The words of an enumeration: `Words<VideoMode>::all`.
template <class Enumeration>
struct Words;

/// The word that devices and people use for the value, such as "1080i59.94"; empty for a value that has none.
template <class Enumeration>
constexpr std::string_view ToText(Enumeration value) {
    for (const Word<Enumeration>& word : Words<Enumeration>::all) {
        if (word.value == value) {
            return word.text;
        }
    }
    return {};
}

/// The value whose word is `text`; ASCII letters may differ in case.
template <class Enumeration>
constexpr std::optional<Enumeration> FromText(std::string_view text) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
    for (const Word<Enumeration>& word : Words<Enumeration>::all) {
        bool same = word.text.size() == text.size();
        for (std::size_t at = 0; same && at < text.size(); ++at) {
            same = lower(word.text[at]) == lower(text[at]);
        }
        if (same) {
            return word.value;
        }
    }
    return std::nullopt;
}

namespace detail {

/// Receives a value from a method.
template <class Raw>
struct Out {
    Raw value{};
};
template <>
struct Out<BSTR> {
    Out() = default;
    Out(const Out&) = delete;
    Out& operator=(const Out&) = delete;
    ~Out() { SysFreeString(value); }
    BSTR value = nullptr;
};

template <class Raw>
Raw* Receive(Out<Raw>& out) {
    return &out.value;
}

template <class Value, class Raw>
Value Take(const Out<Raw>& out) {
    if constexpr (std::is_same_v<Raw, BSTR>) {
        return Utf8FromUtf16({out.value, SysStringLen(out.value)});
    } else if constexpr (std::is_same_v<Value, bool>) {
        return out.value != 0;
    } else {
        return static_cast<Value>(out.value);
    }
}

template <class Raw, class Value>
auto Pass(const Value& value) {
    if constexpr (std::is_same_v<Raw, BSTR>) {
        return TextIn(value);
    } else {
        return static_cast<Raw>(value);
    }
}

/// The identifier of an interface or a class. A constant of its own: a host need not link a library of them, and any
/// compiler knows it.
template <class Raw>
struct Identifier;
template <>
struct Identifier<IUnknown> {
    static constexpr IID value = {0, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
};

}  // namespace detail

/// An interface of a device. Copies share the device and keep it alive.
template <class RawInterface>
class Interface {
public:
    explicit Interface(Pointer<RawInterface> raw) : raw_(std::move(raw)) {}

    /// The interface itself, for what the functions here do not cover.
    RawInterface* Raw() const { return raw_.Get(); }

    /// Another interface of the same object.
    template <class Other>
    Other Ask() const {
        using OtherRaw = std::remove_pointer_t<decltype(std::declval<Other>().Raw())>;
        void* found = nullptr;
        detail::Check("QueryInterface", raw_->QueryInterface(detail::Identifier<OtherRaw>::value, &found),
                      detail::CallKind::Set);
        return Other(Pointer<OtherRaw>::Adopt(static_cast<OtherRaw*>(found)));
    }

private:
    Pointer<RawInterface> raw_;
};

}  // namespace morquil
