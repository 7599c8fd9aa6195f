// Reading, checking and setting.
#include <algorithm>
#include <iterator>
#include <stdexcept>

#include "properties/property.h"
#include "properties/suggestion.h"

namespace Morquil::Properties {
namespace {

constexpr std::size_t mostSuggestions = 3;

std::vector<NamedValue> OfferedWords(const ValueType& type, const std::vector<std::int64_t>& offered) {
    std::vector<NamedValue> words;
    std::copy_if(type.words.begin(), type.words.end(), std::back_inserter(words), [&](const NamedValue& named) {
        return std::find(offered.begin(), offered.end(), named.value) != offered.end();
    });
    return words;
}

Refusal NotOffered(const ValueType& type, const std::vector<NamedValue>& offered, const Value& value) {
    std::vector<std::string_view> words;
    for (const NamedValue& named : offered) {
        words.push_back(named.word);
    }
    const std::string given = FormatValue(type, value);
    Refusal refusal{Refusal::Reason::NotOffered, given + " is not offered now; nearest: "};
    for (const std::size_t at : NearestFirst(given, words, mostSuggestions)) {
        refusal.text += (refusal.nearest.empty() ? "" : ", ") + std::string(offered[at].word);
        refusal.nearest.emplace_back(offered[at].value);
    }
    return refusal;
}

Refusal OutOfRange(const Property& property, const Limits& limits, const Value& value) {
    return {Refusal::Reason::OutOfRange,
            FormatValue(property.type, value) + " is outside " + FormatOffer(property, limits),
            {value < limits.smallest ? limits.smallest : limits.largest}};
}

// For a word that does not exist, the suggestion is one that the device accepts.
Checked ParseOffered(const Property& property, const Offer& offer, std::string_view text) {
    Checked checked = ParseValue(property.type, text);
    const auto* const words = std::get_if<std::vector<std::int64_t>>(&offer);
    if (words == nullptr || std::holds_alternative<Value>(checked)) {
        return checked;
    }
    const std::vector<NamedValue> offered = OfferedWords(property.type, *words);
    ValueType narrowed = property.type;
    narrowed.words = offered;
    return ParseValue(narrowed, text);
}

}  // namespace

bool Exists(const Property& property, const morquil::Device& device) {
    return property.exists == nullptr || property.exists(device, property.number);
}

std::optional<Value> Read(const Property& property, const morquil::Device& device) {
    return property.IsReadable() ? property.read(device, property.number) : std::nullopt;
}

Offer Offered(const Property& property, const morquil::Device& device) {
    return property.offer != nullptr ? property.offer(device) : Offer();
}

std::optional<Refusal> CheckOffered(const Property& property, const Offer& offer, const Value& value) {
    if (const Limits* const limits = std::get_if<Limits>(&offer)) {
        const bool isInside = !(value < limits->smallest) && !(limits->largest < value);
        return isInside ? std::nullopt : std::optional(OutOfRange(property, *limits, value));
    }
    if (const auto* const words = std::get_if<std::vector<std::int64_t>>(&offer)) {
        const std::int64_t* const word = std::get_if<std::int64_t>(&value);
        const bool isOffered = word != nullptr && std::find(words->begin(), words->end(), *word) != words->end();
        return isOffered ? std::nullopt
                         : std::optional(NotOffered(property.type, OfferedWords(property.type, *words), value));
    }
    return std::nullopt;
}

Checked Check(const Property& property, const morquil::Device& device, std::string_view text) {
    if (!property.IsWritable()) {
        return Refusal{Refusal::Reason::ReadOnly, "it can only be read"};
    }
    if (!Exists(property, device)) {
        return Refusal{Refusal::Reason::NotOffered, "this device does not have it"};
    }
    const Offer offer = Offered(property, device);
    Checked checked = ParseOffered(property, offer, text);
    if (const Value* const value = std::get_if<Value>(&checked)) {
        if (std::optional<Refusal> refusal = CheckOffered(property, offer, *value)) {
            return *std::move(refusal);
        }
    }
    return checked;
}

void Set(const Property& property, const morquil::Device& device, const Value& value) {
    if (!property.IsWritable()) {
        throw std::logic_error(property.name + " cannot be set");
    }
    property.write(device, property.number, value);
}

std::string FormatOffer(const Property& property, const Offer& offer) {
    if (const Limits* const limits = std::get_if<Limits>(&offer)) {
        return FormatValue(property.type, limits->smallest) + " to " + FormatValue(property.type, limits->largest);
    }
    std::string text;
    if (const auto* const words = std::get_if<std::vector<std::int64_t>>(&offer)) {
        for (const std::int64_t word : *words) {
            text += (text.empty() ? "" : ", ") + FormatValue(property.type, word);
        }
    }
    return text;
}

}  // namespace Morquil::Properties
