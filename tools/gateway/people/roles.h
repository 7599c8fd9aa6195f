// Who may do what.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace Morquil::Gateway {

enum class Role { Viewer, Operator, Engineer, Admin };

enum class Right {
    See,          // devices, properties, the stream, history, salvos
    SetProperty,  // properties, within the scopes
    RunSalvo,     // also roll one back
    EditSalvo,
    LoadSettings,  // a settings file into a device
    EditFleet,     // add, change and remove devices
    SeeAudit,
    Maintain,      // backup, diagnostics, reload
    ManagePeople,  // users and tokens
};

struct RightRow {
    Right right;
    std::string_view name;
    Role atLeast;  // every role includes the ones before it
};

// clang-format off
inline constexpr std::array<RightRow, 9> rightTable{{
    {Right::See,          "see",           Role::Viewer},
    {Right::SetProperty,  "set",           Role::Operator},
    {Right::RunSalvo,     "run-salvo",     Role::Operator},
    {Right::EditSalvo,    "edit-salvo",    Role::Engineer},
    {Right::LoadSettings, "load-settings", Role::Engineer},
    {Right::EditFleet,    "edit-fleet",    Role::Engineer},
    {Right::SeeAudit,     "see-audit",     Role::Engineer},
    {Right::Maintain,     "maintain",      Role::Admin},
    {Right::ManagePeople, "manage-people", Role::Admin},
}};
// clang-format on

bool May(Role role, Right right);

/// "viewer", "operator", "engineer", "admin"
std::string_view NameOf(Role role);
std::optional<Role> FindRole(std::string_view name);

}  // namespace Morquil::Gateway
