#include "simulator/options.h"

#include <CLI/CLI.hpp>

#include "protocol/value_reader.h"

namespace Morquil::Simulator {

namespace {

constexpr int usageError = 2;

std::string ProtocolVersionProblem(const std::string& text) {
    ProtocolVersion version;
    return ParseVersionPair(text, version.flags, version.minor) ? "" : "a version is two numbers, such as 2.22";
}

}  // namespace

std::optional<Options> ReadOptions(int argumentCount, char** arguments, int& exitStatus) {
    Options options;
    std::string protocolVersion = "2.22";
    CLI::App app{
        "A simulated Morquil video converter.\n"
        "Commands on standard input: \"set BLOCK KEY VALUE\", as in \"set VIDEO PROC AMP Gain 12\", turns a knob at "
        "the\n"
        "front panel; \"quit\" ends the program.",
        "morquil-sim"};
    app.set_version_flag("--version", "morquil-sim " MORQUIL_VERSION);
    app.add_option("--address", options.address, "Address to listen on")->capture_default_str();
    app.add_option("--port", options.port, "TCP port to listen on; 0 takes a free one")->capture_default_str();
    app.add_option("--model", options.identity.modelName, "Model name, up to 49 bytes")->capture_default_str();
    app.add_option("--software-version", options.identity.softwareVersion, "Software version, such as 0x20417");
    app.add_option("--fpga-version", options.identity.fpgaVersion, "FPGA version, such as 0x1c");
    app.add_option("--protocol-version", protocolVersion, "Protocol version; hosts want a minor of 22")
        ->check(CLI::Validator(ProtocolVersionProblem, "NUMBER.NUMBER"))
        ->capture_default_str();
    app.add_flag("--remote-lock", options.identity.remoteLock, "Refuse remote control: hosts disconnect");
    try {
        app.parse(argumentCount, arguments);
    } catch (const CLI::ParseError& error) {
        exitStatus = app.exit(error) == 0 ? 0 : usageError;
        return std::nullopt;
    }
    ProtocolVersion& version = options.identity.protocolVersion;
    ParseVersionPair(protocolVersion, version.flags, version.minor);
    return options;
}

}  // namespace Morquil::Simulator
