#include "gateway/program/options.h"

#include <CLI/CLI.hpp>

namespace Morquil::Gateway {

std::optional<Options> ReadOptions(int argumentCount, const char* const* arguments, int& exitStatus) {
    Options options;
    bool isDemo = false;
    std::string checked;
    CLI::App app("Keeps a fleet of converters connected and serves it to many users and programs.", "morquil-gateway");
    app.set_version_flag("--version", "morquil-gateway " MORQUIL_VERSION);
    app.add_option("--config", options.configFile, "The configuration")->type_name("FILE")->capture_default_str();
    app.add_option("--check", checked, "Check a configuration, print what is wrong with it, and exit")
        ->type_name("FILE");
    app.add_flag("--demo", isDemo, "Start a simulated fleet, and serve it on this machine without a configuration");
    app.add_option("--devices", options.demoDevices, "Number of devices of the demo")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, 250))
        ->capture_default_str();
    app.add_option("--port", options.port, "TCP port, in place of the configured one; 0 chooses a free one")
        ->type_name("NUMBER");
    app.add_option("--panel", options.panelFolder, "Serve the panel from this folder, for its development")
        ->type_name("FOLDER");
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        exitStatus = app.exit(error) == 0 ? 0 : usageError;
        return std::nullopt;
    }
    if (!checked.empty()) {
        options.task = Options::Task::Check;
        options.configFile = checked;
    } else if (isDemo) {
        options.task = Options::Task::Demo;
    }
    return options;
}

}  // namespace Morquil::Gateway
