#include "properties/property.h"

#include <algorithm>

#include "properties/lower_case.h"
#include "properties/property_table.h"
#include "properties/suggestion.h"

namespace Morquil::Properties {
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
std::string WithoutDoubleStars(std::string_view pattern) {
    std::string single(pattern);
    const auto bothStars = [](char left, char right) { return left == '*' && right == '*'; };
    single.erase(std::unique(single.begin(), single.end(), bothStars), single.end());
    return single;
}

bool Precedes(std::string_view left, std::string_view right) {
    return std::lexicographical_compare(left.begin(), left.end(), right.begin(), right.end(),
                                        [](char one, char other) { return Lower(one) < Lower(other); });
}

/// All properties in the order of their names.
Selection MakeIndex() {
    Selection index;
    for (const Property& property : AllProperties()) {
        index.push_back(&property);
    }
    std::sort(index.begin(), index.end(),
              [](const Property* left, const Property* right) { return Precedes(left->name, right->name); });
    return index;
}

/// The letters of a name of the C++ layer, however it is spelled: "VideoProcAmp::GetGain", "video_proc_amp.gain".
std::string LettersOf(std::string_view name) {
    std::string letters;
    for (const char c : name) {
        const char lower = Lower(c);
        if ((lower >= 'a' && lower <= 'z') || (lower >= '0' && lower <= '9')) {
            letters += lower;
        }
    }
    return letters;
}

/// Whether `letters` name a function: with or without its feature, with or without its verb.
bool Names(std::string_view letters, std::string_view function) {
    const std::size_t scope = function.find("::");
    if (scope == std::string_view::npos) {
        return false;
    }
    const std::string feature = LettersOf(function.substr(0, scope));
    const std::string call = LettersOf(function.substr(scope));
    const std::string noun = call.starts_with("get") || call.starts_with("set") ? call.substr(3) : call;
    return letters == feature + call || letters == feature + noun || letters == call;
}

/// The first property that is read or set by the function of the C++ layer that `name` means.
const Property* FindByCall(std::string_view name) {
    const std::string letters = LettersOf(name);
    for (const Property& property : AllProperties()) {
        if (Names(letters, property.getter) || Names(letters, property.setter)) {
            return &property;
        }
    }
    return nullptr;
}

}  // namespace

const std::vector<Property>& AllProperties() {
    static const std::vector<Property> all = MakeTable();
    return all;
}

const Property* FindProperty(std::string_view name) {
    static const Selection index = MakeIndex();
    const auto found = std::lower_bound(
        index.begin(), index.end(), name,
        [](const Property* property, std::string_view wanted) { return Precedes(property->name, wanted); });
    return found != index.end() && IsSameButForCase((*found)->name, name) ? *found : nullptr;
}

std::string_view NearestName(std::string_view name) {
    if (const Property* const property = FindByCall(name)) {
        return property->name;
    }
    std::vector<std::string_view> names;
    for (const Property& property : AllProperties()) {
        names.push_back(property.name);
        for (std::size_t point = property.name.find('.'); point != std::string::npos;
             point = property.name.find('.', point + 1)) {
            names.push_back(std::string_view(property.name).substr(0, point));
        }
    }
    return Nearest(name, names);
}

Selection Matching(std::string_view pattern) {
    const std::string name = WithoutDoubleStars(pattern);
    const std::string beginning = name + ".*";
    Selection selection;
    for (const Property& property : AllProperties()) {
        if (Matches(name, property.name) || Matches(beginning, property.name)) {
            selection.push_back(&property);
        }
    }
    return selection;
}

std::string_view NameOf(Access access) {
    return access == Access::Command ? "command" : access == Access::ReadWrite ? "read/write" : "read";
}

}  // namespace Morquil::Properties
