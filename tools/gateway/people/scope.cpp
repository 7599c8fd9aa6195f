#include "gateway/people/scope.h"

#include <algorithm>

namespace Morquil::Gateway {
namespace {

// Goes back only to the last star, which is enough: an earlier one never needs to take more.
bool MatchesWhole(std::string_view pattern, std::string_view name) {
    std::size_t p = 0;
    std::size_t n = 0;
    std::size_t star = pattern.npos;
    std::size_t afterStar = 0;
    while (n < name.size()) {
        if (p < pattern.size() && pattern[p] == '*') {
            star = p++;
            afterStar = n;
        } else if (p < pattern.size() && (pattern[p] == '?' || pattern[p] == name[n])) {
            ++p;
            ++n;
        } else if (star != pattern.npos) {
            p = star + 1;
            n = ++afterStar;
        } else {
            return false;
        }
    }
    return pattern.find_first_not_of('*', p) == pattern.npos;
}

}  // namespace

bool MatchesPattern(std::string_view pattern, std::string_view name) {
    for (std::size_t point = name.find('.'); point != name.npos; point = name.find('.', point + 1)) {
        if (MatchesWhole(pattern, name.substr(0, point))) {
            return true;
        }
    }
    return MatchesWhole(pattern, name);
}

bool Covers(const std::vector<Scope>& scopes, std::string_view device, std::string_view property) {
    return std::any_of(scopes.begin(), scopes.end(), [&](const Scope& scope) {
        return MatchesPattern(scope.devices, device) && MatchesPattern(scope.properties, property);
    });
}

bool CoversDevice(const std::vector<Scope>& scopes, std::string_view device) {
    return std::any_of(scopes.begin(), scopes.end(),
                       [&](const Scope& scope) { return MatchesPattern(scope.devices, device); });
}

}  // namespace Morquil::Gateway
