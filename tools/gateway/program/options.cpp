#include "gateway/program/options.h"

#include <CLI/CLI.hpp>
#include <map>

namespace Morquil::Gateway {
namespace {

using Task = Options::Task;

void AddServing(CLI::App& app, Options& options) {
    app.add_option("--config", options.configFile, "The configuration")->type_name("FILE")->capture_default_str();
    app.add_option_function<std::string>(
           "--check",
           [&options](const std::string& file) {
               options.task = Task::Check;
               options.configFile = file;
           },
           "Check a configuration, print what is wrong with it, and exit")
        ->type_name("FILE");
    app.add_flag_callback(
        "--demo", [&options] { options.task = Task::Demo; },
        "Start a simulated fleet, and serve it on this machine without a configuration");
    app.add_option("--devices", options.demoDevices, "Number of devices of the demo")
        ->type_name("NUMBER")
        ->check(CLI::Range(1, 250))
        ->capture_default_str();
    app.add_option("--port", options.port, "TCP port, in place of the configured one; 0 chooses a free one")
        ->type_name("NUMBER");
    app.add_option("--panel", options.panelFolder, "Serve the panel from this folder, for its development")
        ->type_name("FOLDER");
}

CLI::App* AddTask(CLI::App& app, Options& options, Task task, const char* name, const char* description) {
    CLI::App* const command = app.add_subcommand(name, description);
    command->final_callback([&options, task] { options.task = task; });
    command->add_option("--database", options.database, "The database; the configured one by default")
        ->type_name("FILE");
    command->fallthrough();
    return command;
}

void AddRole(CLI::App& command, Options& options) {
    static const std::map<std::string, Role> roles{
        {"viewer", Role::Viewer}, {"operator", Role::Operator}, {"engineer", Role::Engineer}, {"admin", Role::Admin}};
    command.add_option("name", options.name, "Its name")->required()->type_name("NAME");
    command.add_option("--role", options.role, "viewer, operator, engineer or admin")
        ->required()
        ->type_name("ROLE")
        ->transform(CLI::CheckedTransformer(roles).description(""));
}

void AddTasks(CLI::App& app, Options& options) {
    AddTask(app, options, Task::Verify, "verify", "Examine the audit for rows that were changed or removed");
    AddTask(app, options, Task::BackUp, "backup", "Copy the database, which may be in use, to a new file")
        ->add_option("file", options.file, "The new file")
        ->required()
        ->type_name("FILE");
    CLI::App* const user = app.add_subcommand("user", "Users")->require_subcommand(1)->fallthrough();
    AddRole(*AddTask(*user, options, Task::AddUser, "add", "Add a user; the password is read from standard input"),
            options);
    CLI::App* const token = app.add_subcommand("token", "Tokens, for programs")->require_subcommand(1)->fallthrough();
    CLI::App* const addToken = AddTask(*token, options, Task::AddToken, "add", "Make a token, and print it");
    AddRole(*addToken, options);
    addToken->add_option("--days", options.days, "Until it expires; 0 for never")->type_name("NUMBER");
}

}  // namespace

std::optional<Options> ReadOptions(int argumentCount, const char* const* arguments, int& exitStatus) {
    Options options;
    CLI::App app("Keeps a fleet of converters connected and serves it to many users and programs.", "morquil-gateway");
    app.set_version_flag("--version", "morquil-gateway " MORQUIL_VERSION);
    app.require_subcommand(0, 1);
    AddServing(app, options);
    AddTasks(app, options);
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        exitStatus = app.exit(error) == 0 ? 0 : usageError;
        return std::nullopt;
    }
    return options;
}

}  // namespace Morquil::Gateway
