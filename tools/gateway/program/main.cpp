#include <sys/resource.h>

#include <cstdio>
#include <exception>

#include "gateway/config/config.h"
#include "gateway/program/demo_fleet.h"
#include "gateway/program/gateway.h"
#include "gateway/program/options.h"
#include "gateway/text/log.h"
#include "morquil.hpp"

namespace Morquil::Gateway {
namespace {

/// Each client and each device needs a descriptor.
void RaiseDescriptorLimit() {
    rlimit limit = {};
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0) {
        limit.rlim_cur = limit.rlim_max;
        ::setrlimit(RLIMIT_NOFILE, &limit);
    }
}

/// Returns: nothing after it has printed what is wrong.
std::optional<Config> TakeConfig(const std::string& path) {
    ConfigReading reading = ReadConfigFile(path);
    if (Config* const config = std::get_if<Config>(&reading)) {
        return std::move(*config);
    }
    for (const ConfigFault& fault : std::get<std::vector<ConfigFault>>(reading)) {
        std::fprintf(stderr, "%s\n", fault.In(path).c_str());
    }
    return std::nullopt;
}

int Serve(GatewaySettings settings) {
    morquil::SilenceLibrary();
    RaiseDescriptorLimit();
    Gateway gateway(std::move(settings));
    if (const std::string problem = gateway.Start(); !problem.empty()) {
        Log(LogLevel::Error, "cannot start", {{"reason", problem}});
        return 1;
    }
    gateway.HandleSignals();
    std::printf("%s\n", gateway.Url().c_str());
    std::fflush(stdout);
    gateway.Run();
    return 0;
}

int ServeDemo(const Options& options) {
    DemoFleet fleet;
    if (const std::string problem = fleet.Start(options.demoDevices); !problem.empty()) {
        std::fprintf(stderr, "morquil-gateway: %s\n", problem.c_str());
        return 1;
    }
    GatewaySettings settings;
    settings.config.devices = fleet.Entries();
    settings.config.server.port = options.port.value_or(settings.config.server.port);
    settings.panelFolder = options.panelFolder;
    return Serve(std::move(settings));
}

int ServeConfigured(const Options& options) {
    std::optional<Config> config = TakeConfig(options.configFile);
    if (!config || options.task == Options::Task::Check) {
        return config ? 0 : usageError;
    }
    GatewaySettings settings{*std::move(config), options.configFile, {}, options.panelFolder};
    settings.folder = settings.config.store.folder;
    settings.config.server.port = options.port.value_or(settings.config.server.port);
    return Serve(std::move(settings));
}

}  // namespace
}  // namespace Morquil::Gateway

int main(int argumentCount, char** arguments) try {
    using namespace Morquil::Gateway;
    int exitStatus = 0;
    const std::optional<Options> options = ReadOptions(argumentCount, arguments, exitStatus);
    if (!options) {
        return exitStatus;
    }
    return options->task == Options::Task::Demo ? ServeDemo(*options) : ServeConfigured(*options);
} catch (const std::exception& error) {
    std::fprintf(stderr, "morquil-gateway: %s\n", error.what());
    return 1;
}
