#include <sys/resource.h>

#include <cstdio>
#include <exception>
#include <filesystem>

#include "gateway/config/config.h"
#include "gateway/program/commands.h"
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

/// Next to the configuration, unless it says where.
std::string FolderOf(const Options& options, const Config& config) {
    if (!config.store.folder.empty()) {
        return config.store.folder;
    }
    return std::filesystem::absolute(options.configFile).parent_path();
}

int ServeConfigured(const Options& options, Config config) {
    GatewaySettings settings;
    settings.folder = FolderOf(options, config);
    settings.config = std::move(config);
    settings.config.server.port = options.port.value_or(settings.config.server.port);
    settings.configFile = options.configFile;
    settings.panelFolder = options.panelFolder;
    return Serve(std::move(settings));
}

int RunTask(const Options& options, const std::string& database) {
    switch (options.task) {
        case Options::Task::Verify:
            return VerifyAudit(database);
        case Options::Task::BackUp:
            return BackUpDatabase(database, options.file);
        case Options::Task::AddUser:
            return AddUser(database, options.name, options.role);
        default:
            return AddToken(database, options.name, options.role, options.days);
    }
}

int Perform(const Options& options) {
    if (options.task == Options::Task::Demo) {
        return ServeDemo(options);
    }
    const bool isServing = options.task == Options::Task::Serve || options.task == Options::Task::Check;
    if (!isServing && !options.database.empty()) {
        return RunTask(options, options.database);
    }
    std::optional<Config> config = TakeConfig(options.configFile);
    if (!config || options.task == Options::Task::Check) {
        return config ? 0 : usageError;
    }
    return isServing ? ServeConfigured(options, *std::move(config))
                     : RunTask(options, FolderOf(options, *config) + "/gateway.db");
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
    return Perform(*options);
} catch (const std::exception& error) {
    std::fprintf(stderr, "morquil-gateway: %s\n", error.what());
    return 1;
}
