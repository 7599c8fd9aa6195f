// Values of properties, as text and typed.
#pragma once

#include <limits>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

#include "morquil/property_text.hpp"

namespace morquil {

namespace detail {

/// Whether a property holds words of this enumeration.
template <class Enumeration>
bool HasWordsOf(const PropertyInfo& info) {
    return info.kind == PropertyKind::Word && info.enumeration == Words<Enumeration>::name;
}

inline bool IsNumber(PropertyKind kind) {
    return kind != PropertyKind::Word && kind != PropertyKind::YesNo && kind != PropertyKind::Text &&
           kind != PropertyKind::Nothing;
}

}  // namespace detail

/// A value of a property. Values of the same kind compare.
class PropertyValue {
public:
    /// For `Property`.
    PropertyValue(const detail::PropertyRow& row, detail::Stored stored) : row_(&row), stored_(std::move(stored)) {}

    /// As people write it and `Property::Set` reads it, without its unit.
    std::string Text() const { return detail::TextOf(*row_, stored_); }

    /// As a bool, an integer, a floating-point number or the property's enumeration; as a std::string, the same as
    /// `Text`.
    /// Throws: InvalidArgument if the value is not of this type, or too large for it.
    template <class T>
    T As() const {
        if constexpr (std::is_same_v<T, std::string>) {
            return Text();
        } else if constexpr (std::is_same_v<T, bool>) {
            return Held<bool>(true);
        } else if constexpr (std::is_enum_v<T>) {
            return static_cast<T>(Held<std::int64_t>(detail::HasWordsOf<T>(row_->info)));
        } else if constexpr (std::is_floating_point_v<T>) {
            const bool isWhole = std::holds_alternative<std::int64_t>(stored_);
            return isWhole ? static_cast<T>(AsNumber()) : static_cast<T>(Held<double>(true));
        } else {
            static_assert(std::is_integral_v<T>, "a property has no values of this type");
            return Narrow<T>(AsNumber());
        }
    }

    friend bool operator==(const PropertyValue& a, const PropertyValue& b) {
        return a.row_->info.enumeration == b.row_->info.enumeration && a.stored_ == b.stored_;
    }
    friend bool operator!=(const PropertyValue& a, const PropertyValue& b) { return !(a == b); }

private:
    std::int64_t AsNumber() const { return Held<std::int64_t>(detail::IsNumber(row_->info.kind)); }

    template <class Alternative>
    const Alternative& Held(bool isRight) const {
        const Alternative* const held = std::get_if<Alternative>(&stored_);
        if (held == nullptr || !isRight) {
            detail::Refuse(row_->info, detail::Quoted(Text()) + " is not of the type that was asked for");
        }
        return *held;
    }

    template <class T>
    T Narrow(std::int64_t number) const {
        const auto narrow = static_cast<T>(number);
        if (static_cast<std::int64_t>(narrow) != number || (narrow < 0) != (number < 0)) {
            detail::Refuse(row_->info, std::to_string(number) + " is too large for the type that was asked for");
        }
        return narrow;
    }

    const detail::PropertyRow* row_;
    detail::Stored stored_;
};

namespace detail {

/// A host's number, which may be larger than any property's.
template <class Number>
std::int64_t Bounded(Number number) {
    constexpr auto largest = (std::numeric_limits<std::int64_t>::max)();
    if constexpr (std::is_unsigned_v<Number>) {
        return number > static_cast<std::uint64_t>(largest) ? largest : static_cast<std::int64_t>(number);
    } else {
        return number;
    }
}

/// What a host's value means for a property.
/// Throws: InvalidArgument unless it is one of its values.
template <class Value>
Stored StoredOf(const PropertyRow& row, const Value& value) {
    const PropertyKind kind = row.info.kind;
    if constexpr (std::is_convertible_v<const Value&, std::string_view>) {
        return Parse(row, value);
    } else if constexpr (std::is_same_v<Value, PropertyValue>) {
        return Parse(row, value.Text());
    } else if constexpr (std::is_enum_v<Value>) {
        if (HasWordsOf<Value>(row.info)) {
            return static_cast<std::int64_t>(value);
        }
    } else if constexpr (std::is_same_v<Value, bool>) {
        if (kind == PropertyKind::YesNo) {
            return value;
        }
    } else if constexpr (std::is_integral_v<Value>) {
        if (kind == PropertyKind::Decimal) {
            return static_cast<double>(value);
        }
        if (IsNumber(kind)) {
            return WithinLimits(row.info, Bounded(value));
        }
    } else {
        static_assert(std::is_floating_point_v<Value>, "a property has no values of this type");
        if (kind == PropertyKind::Decimal) {
            return static_cast<double>(value);
        }
    }
    Refuse(row.info, "the value is of another type than the property's");
}

}  // namespace detail

}  // namespace morquil
