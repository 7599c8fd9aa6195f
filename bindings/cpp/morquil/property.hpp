// A device's properties by name.
#pragma once

#include <algorithm>
#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "morquil/device.hpp"
#include "morquil/property_table.hpp"
#include "morquil/property_value.hpp"

namespace morquil {

/// A property of one device: `device["output.video-mode"]`. Values can be texts, as `morquilctl` reads and writes them,
/// or typed: numbers, bool, and the enumerations of this layer.
///
/// What a device accepts changes with its other settings, so `Set` and `Apply` compare a value with what it has
/// reported to accept now, before anything is sent. What it has not reported is not checked.
class Property {
public:
    /// For `Device`.
    Property(Device device, const detail::PropertyRow& row) : device_(std::move(device)), row_(&row) {}

    const PropertyInfo& Info() const { return row_->info; }

    /// Whether the device has it, as far as it has reported that: it may have fewer presets than there are names.
    bool Exists() const { return row_->exists == nullptr || row_->exists(device_, row_->item); }

    /// What the device has reported; nothing if it has not. Never waits.
    std::optional<PropertyValue> Known() const {
        const std::optional<detail::Stored> stored =
            row_->read != nullptr ? row_->read(device_, row_->item) : std::nullopt;
        return stored ? std::optional(PropertyValue(*row_, *stored)) : std::nullopt;
    }

    /// What the device has reported.
    /// Throws: NotKnown if it has not, or if the property is a command.
    PropertyValue Get() const {
        std::optional<PropertyValue> value = Known();
        if (!value) {
            ThrowNotKnown(row_->read != nullptr ? "the device has not reported the value"
                                                : "it is a command, and has no value");
        }
        return *std::move(value);
    }

    /// The same, typed: see `PropertyValue::As`.
    template <class T>
    T Get() const {
        return Get().template As<T>();
    }

    /// The same, as people write it.
    std::string Text() const { return Get().Text(); }

    /// The limits of a number, which the device reports.
    /// Throws: NotKnown if it has reported none.
    Range<PropertyValue> GetRange() const {
        const detail::Offer offer = Offered();
        const auto* const range = std::get_if<Range<detail::Stored>>(&offer);
        if (range == nullptr) {
            ThrowNotKnown("the device has reported no range");
        }
        return {{*row_, range->min}, {*row_, range->max}};
    }

    /// The same, typed.
    template <class T>
    Range<T> GetRange() const {
        const Range<PropertyValue> range = GetRange();
        return {range.min.template As<T>(), range.max.template As<T>()};
    }

    /// The words that the device accepts now; none if it has not reported them.
    std::vector<PropertyValue> GetOffered() const {
        const detail::Offer offer = Offered();
        std::vector<PropertyValue> values;
        if (const auto* const words = std::get_if<std::vector<std::int64_t>>(&offer)) {
            for (const std::int64_t word : *words) {
                values.emplace_back(*row_, word);
            }
        }
        return values;
    }

    /// Throws what `Set` would throw, and sends nothing.
    template <class Value>
    void Check(const Value& value) const {
        Checked(value);
    }

    /// Queues the change; the device's report confirms it.
    /// Throws: InvalidArgument if it is no value of the property, is outside its range, or if the property can only be
    /// read; NotOffered if the device does not accept it now.
    template <class Value>
    void Set(const Value& value) const {
        row_->write(device_, row_->item, Checked(value));
    }

    /// The same for a command without a value.
    void Set() const {
        if (Info().kind != PropertyKind::Nothing) {
            detail::Refuse(Info(), "it needs a value");
        }
        row_->write(device_, row_->item, std::int64_t{0});
    }

    /// Sets it, and waits until the device has confirmed or refused the change: see `Device::Apply`.
    template <class Value>
    Outcome Apply(const Value& value, std::chrono::milliseconds limit = std::chrono::seconds(10)) const {
        return device_.Apply([&] { Set(value); }, limit);
    }

    /// The same for a command without a value.
    Outcome Apply() const {
        return device_.Apply([&] { Set(); });
    }

private:
    detail::Offer Offered() const { return row_->offer != nullptr ? row_->offer(device_) : detail::Offer(); }

    template <class Value>
    detail::Stored Checked(const Value& value) const {
        if (!Info().isWritable) {
            detail::Refuse(Info(), "it can only be read");
        }
        if (!Exists()) {
            throw NotOffered(std::string(Info().name), E_INVALIDARG, "this device does not have it");
        }
        detail::Stored stored = detail::StoredOf(*row_, value);
        const detail::Offer offer = Offered();
        if (const auto* const range = std::get_if<Range<detail::Stored>>(&offer)) {
            CheckRange(*range, stored);
        } else if (const auto* const words = std::get_if<std::vector<std::int64_t>>(&offer)) {
            CheckWord(*words, stored);
        }
        return stored;
    }

    void CheckRange(const Range<detail::Stored>& range, const detail::Stored& value) const {
        if (value < range.min || range.max < value) {
            const auto text = [this](const detail::Stored& stored) { return detail::TextOf(*row_, stored); };
            detail::Refuse(Info(), text(value) + " is outside " + text(range.min) + " to " + text(range.max));
        }
    }

    void CheckWord(const std::vector<std::int64_t>& words, const detail::Stored& value) const {
        std::string offered;
        for (const std::int64_t word : words) {
            if (value == detail::Stored(word)) {
                return;
            }
            offered += (offered.empty() ? "" : ", ") + detail::TextOf(*row_, word);
        }
        throw NotOffered(std::string(Info().name), E_INVALIDARG,
                         detail::TextOf(*row_, value) + " is not offered now; the device accepts " + offered);
    }

    [[noreturn]] void ThrowNotKnown(const char* reason) const {
        throw NotKnown(std::string(Info().name), E_FAIL, reason);
    }

    Device device_;
    const detail::PropertyRow* row_;
};

namespace detail {

/// * stands for any letters, ? for one.
inline bool Matches(std::string_view pattern, std::string_view name) {
    std::size_t afterStar = std::string_view::npos;
    std::size_t retry = 0;
    std::size_t at = 0;
    for (std::size_t in = 0; in < name.size();) {
        if (at < pattern.size() && pattern[at] == '*') {
            afterStar = ++at;
            retry = in;
        } else if (at < pattern.size() && (pattern[at] == '?' || Lower(pattern[at]) == name[in])) {
            ++at;
            ++in;
        } else if (afterStar != std::string_view::npos) {
            at = afterStar;
            in = ++retry;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', at) == std::string_view::npos;
}

/// The rows that a pattern means.
template <class = void>
std::vector<const PropertyRow*> MatchingRows(std::string_view pattern) {
    const std::string beginning = std::string(pattern) + ".*";
    std::vector<const PropertyRow*> found;
    for (const PropertyRow& row : PropertyTable<>::rows) {
        if (Matches(pattern, row.info.name) || Matches(beginning, row.info.name)) {
            found.push_back(&row);
        }
    }
    return found;
}

[[noreturn]] inline void ThrowNoSuchProperty(std::string_view name) {
    throw NoSuchProperty(std::string(name), E_INVALIDARG, "there is no such property");
}

}  // namespace detail

template <class Text>
Property Device::operator[](const Text& name) const {
    const std::string_view wanted(name);
    for (const detail::PropertyRow& row : detail::PropertyTable<>::rows) {
        if (detail::IsSameButForCase(row.info.name, wanted)) {
            return {*this, row};
        }
    }
    detail::ThrowNoSuchProperty(wanted);
}

template <class Text>
std::vector<Property> Device::Properties(const Text& pattern) const {
    std::vector<Property> properties;
    for (const detail::PropertyRow* const row : detail::MatchingRows<>(pattern)) {
        properties.emplace_back(*this, *row);
    }
    return properties;
}

}  // namespace morquil
