#include "command/properties/property.h"

#include <algorithm>
#include <iterator>

#include "command/arguments/exit_code.h"

namespace Morquil::Command {
namespace {

[[noreturn]] void RefuseName(std::string_view name) {
    const std::string_view nearest = Properties::NearestName(name);
    throw UsageFailure(
        "'" + std::string(name) + "' is not a property" +
        (nearest.empty() ? std::string("; see: morquilctl list") : "; nearest: " + std::string(nearest)));
}

}  // namespace

const Property& FindProperty(std::string_view name) {
    const Property* const found = Properties::FindProperty(name);
    if (found == nullptr) {
        RefuseName(name);
    }
    return *found;
}

bool IsExactName(std::string_view pattern) {
    return Properties::FindProperty(pattern) != nullptr;
}

Selection SelectProperties(const std::vector<std::string>& patterns) {
    Selection selection = patterns.empty() ? Properties::Matching("*") : Selection();
    for (const std::string& pattern : patterns) {
        const Selection matching = Properties::Matching(pattern);
        if (matching.empty()) {
            RefuseName(pattern);
        }
        std::copy_if(matching.begin(), matching.end(), std::back_inserter(selection), [&](const Property* property) {
            return std::find(selection.begin(), selection.end(), property) == selection.end();
        });
    }
    return selection;
}

}  // namespace Morquil::Command
