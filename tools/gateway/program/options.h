// The command line.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "gateway/people/roles.h"

namespace Morquil::Gateway {

struct Options {
    enum class Task { Serve, Demo, Check, Verify, BackUp, AddUser, AddToken };

    Task task = Task::Serve;
    std::string configFile = "/etc/morquil-gateway/gateway.toml";
    unsigned demoDevices = 8;
    std::optional<std::uint16_t> port = {};  // in place of the configured one
    std::string panelFolder = {};            // for the development of the panel

    // Of the other tasks.
    std::string database = {};  // empty: the configured one
    std::string file = {};
    std::string name = {};
    Role role = Role::Viewer;
    unsigned days = 0;
};

/// The exit status for a wrong command line or configuration.
inline constexpr int usageError = 2;

/// If the result is empty, the program must end with `exitStatus`: help was printed, or what is wrong.
std::optional<Options> ReadOptions(int argumentCount, const char* const* arguments, int& exitStatus);

}  // namespace Morquil::Gateway
