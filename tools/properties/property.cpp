#include "command/properties/property.h"

#include <algorithm>
#include <functional>
#include <span>

#include "command/arguments/exit_code.h"
#include "command/properties/lower_case.h"
#include "command/properties/property_table.h"
#include "command/properties/suggestion.h"

namespace Morquil::Command {
namespace {

std::vector<Property> MakeTable() {
    std::vector<Property> all;
    AddDeviceRows(all);
    AddSignalRows(all);
    AddPictureRows(all);
    AddGeometryRows(all);
    AddAncillaryRows(all);
    AddAudioRows(all);
    return all;
}

bool Matches(std::string_view pattern, std::string_view name) {
    if (pattern.empty()) {
        return name.empty();
    }
    if (pattern.front() == '*') {
        return Matches(pattern.substr(1), name) || (!name.empty() && Matches(pattern, name.substr(1)));
    }
    return !name.empty() && (pattern.front() == '?' || Lower(pattern.front()) == name.front()) &&
           Matches(pattern.substr(1), name.substr(1));
}

// Several stars in a row mean the same as one; left in place, they would make matching far too slow.
std::string WithoutDoubleStars(std::string pattern) {
    const auto bothStars = [](char left, char right) { return left == '*' && right == '*'; };
    pattern.erase(std::unique(pattern.begin(), pattern.end(), bothStars), pattern.end());
    return pattern;
}

bool IsMeant(const std::string& pattern, const std::string& name) {
    return Matches(pattern, name) || Matches(pattern + ".*", name);
}

[[noreturn]] void RefuseName(std::string_view name) {
    std::vector<std::string_view> names;
    for (const Property& property : AllProperties()) {
        names.push_back(property.name);
        for (std::size_t point = property.name.find('.'); point != std::string::npos;
             point = property.name.find('.', point + 1)) {
            names.push_back(std::string_view(property.name).substr(0, point));
        }
    }
    const std::string_view nearest = Nearest(name, names);
    throw UsageFailure(
        "'" + std::string(name) + "' is not a property" +
        (nearest.empty() ? std::string("; see: morquilctl list") : "; nearest: " + std::string(nearest)));
}

const Property* Look(std::string_view name) {
    const auto same = [name](const Property& property) {
        return std::equal(name.begin(), name.end(), property.name.begin(), property.name.end(),
                          [](char left, char right) { return Lower(left) == right; });
    };
    const auto found = std::find_if(AllProperties().begin(), AllProperties().end(), same);
    return found != AllProperties().end() ? &*found : nullptr;
}

}  // namespace

const std::vector<Property>& AllProperties() {
    static const std::vector<Property> all = MakeTable();
    return all;
}

const Property& FindProperty(std::string_view name) {
    const Property* const found = Look(name);
    if (found == nullptr) {
        RefuseName(name);
    }
    return *found;
}

bool IsExactName(const std::string& pattern) {
    return Look(pattern) != nullptr;
}

Selection SelectProperties(const std::vector<std::string>& patterns) {
    Selection selection;
    std::vector<bool> isTaken(AllProperties().size(), false);
    const auto take = [&](std::size_t at) {
        if (!isTaken[at]) {
            isTaken[at] = true;
            selection.push_back(&AllProperties()[at]);
        }
    };
    const auto takeAll = [&](const std::string& pattern) {
        bool found = false;
        for (std::size_t at = 0; at < isTaken.size(); ++at) {
            if (IsMeant(pattern, AllProperties()[at].name)) {
                take(at);
                found = true;
            }
        }
        return found;
    };
    for (const std::string& given : patterns) {
        if (!takeAll(WithoutDoubleStars(given))) {
            RefuseName(given);
        }
    }
    if (patterns.empty()) {
        takeAll("*");
    }
    return selection;
}

std::optional<Value> ReadValue(const Property& property, const morquil::Device& device) {
    try {
        return property.read(device, property.number);
    } catch (const morquil::NotKnown&) {
        return std::nullopt;
    }
}

Offer ReadOffer(const Property& property, const morquil::Device& device) {
    try {
        return property.offer != nullptr ? property.offer(device) : Offer();
    } catch (const morquil::NotKnown&) {
        return {};
    }
}

}  // namespace Morquil::Command
