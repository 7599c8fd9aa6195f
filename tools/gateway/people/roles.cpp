#include "gateway/people/roles.h"

#include <algorithm>
#include <iterator>

namespace Morquil::Gateway {
namespace {

constexpr std::array<std::string_view, 4> roleNames{"viewer", "operator", "engineer", "admin"};

}  // namespace

bool May(Role role, Right right) {
    const auto row =
        std::find_if(rightTable.begin(), rightTable.end(), [&](const RightRow& r) { return r.right == right; });
    return row != rightTable.end() && role >= row->atLeast;
}

std::string_view NameOf(Role role) {
    return roleNames.at(static_cast<std::size_t>(role));
}

std::optional<Role> FindRole(std::string_view name) {
    const auto found = std::find(roleNames.begin(), roleNames.end(), name);
    return found != roleNames.end() ? std::optional(Role(std::distance(roleNames.begin(), found))) : std::nullopt;
}

}  // namespace Morquil::Gateway
