#pragma once

#include <algorithm>
#include <array>
#include <bitset>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "platform/utf8.h"
#include "protocol/text/ascii.h"

namespace Morquil {

/// A pair of limits, both inclusive.
template <class T>
struct Range {
    T minimum{};
    T maximum{};
    bool operator==(const Range&) const = default;
};

/// One value of a change set with its own presence mark.
/// Not-a-number differs from everything, itself included, so reporting it always counts as a change.
template <class T>
class Field {
public:
    using Value = T;

    bool IsPresent() const { return present_; }
    const T& Get() const { return value_; }
    void Set(const T& value) {
        value_ = value;
        present_ = true;
    }
    void Clear() { *this = {}; }
    bool DiffersFrom(const Field& other) const { return !(value_ == other.value_); }

private:
    T value_{};
    bool present_ = false;
};

/// One value of a change set without a presence mark: it is absent while it holds `absent`.
template <class T, T absent>
class ReservedField {
public:
    using Value = T;

    bool IsPresent() const { return value_ != absent; }
    const T& Get() const { return value_; }
    void Set(const T& value) { value_ = value; }
    void Clear() { value_ = absent; }
    bool DiffersFrom(const ReservedField& other) const { return value_ != other.value_; }

private:
    T value_ = absent;
};

/// An enumerated value, absent while it holds the number of its words.
template <class Vocabulary>
using WordField = ReservedField<std::int32_t, static_cast<std::int32_t>(Vocabulary::words.Size())>;

enum class Compare { ExactCase, AnyCase };

/// UTF-8 text of at most `capacity` bytes. Longer text is cut at its end, never inside a character.
/// With `Compare::AnyCase` two texts that differ only in the case of ASCII letters are the same value.
template <std::size_t capacity = 49, Compare comparison = Compare::ExactCase>
class TextField {
public:
    bool IsPresent() const { return present_; }
    std::string_view Get() const { return {text_.data(), length_}; }
    const char* CString() const { return text_.data(); }
    void Set(std::string_view text, std::size_t limit = capacity) {
        length_ = Utf8Prefix(text, limit < capacity ? limit : capacity);
        std::memcpy(text_.data(), text.data(), length_);
        text_[length_] = '\0';
        present_ = true;
    }
    void Clear() { *this = {}; }
    bool DiffersFrom(const TextField& other) const {
        return comparison == Compare::AnyCase ? !EqualsIgnoringCase(Get(), other.Get()) : Get() != other.Get();
    }

private:
    std::array<char, capacity + 1> text_{};
    std::size_t length_ = 0;
    bool present_ = false;
};

/// A list of words: one flag per word of the vocabulary, and whether the list has been received.
template <class Vocabulary>
class SetField {
public:
    static constexpr std::size_t size = Vocabulary::words.Size();

    bool IsPresent() const { return present_; }
    /// False for every index outside the vocabulary.
    bool Has(std::size_t index) const { return index < size && flags_[index]; }
    bool HasAny() const { return flags_.any(); }
    void MarkReceived() { present_ = true; }
    void Add(std::size_t index) {
        flags_.set(index);
        present_ = true;
    }
    void Clear() { *this = {}; }
    bool DiffersFrom(const SetField& other) const { return flags_ != other.flags_; }

private:
    std::bitset<size> flags_;
    bool present_ = false;
};

/// Whether a field, or every element of an array of them, is present.
template <class FieldType>
bool IsPresent(const FieldType& field) {
    return field.IsPresent();
}
template <class FieldType, std::size_t count>
bool IsPresent(const std::array<FieldType, count>& fields) {
    return std::all_of(fields.begin(), fields.end(), [](const FieldType& field) { return field.IsPresent(); });
}

template <class FieldType>
bool MergeField(FieldType& target, const FieldType& source) {
    if (!source.IsPresent() || (target.IsPresent() && !target.DiffersFrom(source))) {
        return false;
    }
    target = source;
    return true;
}

template <class FieldType, std::size_t count>
bool MergeField(std::array<FieldType, count>& target, const std::array<FieldType, count>& source) {
    bool changed = false;
    for (std::size_t index = 0; index < count; ++index) {
        changed |= MergeField(target[index], source[index]);
    }
    return changed;
}

/// Unlike `MergeField` it also copies a value that counts as the same, such as a name in another letter case.
template <class FieldType>
void OverwriteField(FieldType& target, const FieldType& source) {
    if (source.IsPresent()) {
        target = source;
    }
}

template <class FieldType, std::size_t count>
void OverwriteField(std::array<FieldType, count>& target, const std::array<FieldType, count>& source) {
    for (std::size_t index = 0; index < count; ++index) {
        OverwriteField(target[index], source[index]);
    }
}

}  // namespace Morquil
