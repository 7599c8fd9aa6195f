#include <asio.hpp>
#include <cstdio>
#include <string>

#include "simulator/options.h"
#include "simulator/panel_input.h"
#include "simulator/server.h"
#include "simulator/simulated_device.h"
#include "simulator/text_lines.h"

namespace Morquil::Simulator {

namespace {

void PrintReport(const std::string& report) {
    std::string_view header;
    ForEachLine(report, [&](std::string_view line) {
        if (line.empty()) {
            header = {};
        } else if (header.empty()) {
            header = line;
        } else {
            std::printf("panel: %.*s %.*s\n", static_cast<int>(header.size()), header.data(),
                        static_cast<int>(line.size()), line.data());
        }
    });
    std::fflush(stdout);
}

void ObeyLine(std::string_view line, SimulatedDevice& device, Server& server, asio::io_context& context) {
    const std::string_view command = Trimmed(line);
    if (command.empty()) {
        return;
    }
    if (command == "quit") {
        context.stop();
        return;
    }
    const PanelOutcome outcome = device.UsePanel(command);
    if (!outcome.refusal.empty()) {
        std::fprintf(stderr, "morquil-sim: %s\n", outcome.refusal.c_str());
    }
    PrintReport(outcome.report);
    server.SendAll();
}

bool Listen(Server& server, const Options& options) {
    asio::error_code error;
    const asio::ip::address address = asio::ip::make_address(options.address, error);
    if (!error) {
        error = server.Listen({address, options.port});
    }
    if (error) {
        std::fprintf(stderr, "morquil-sim: cannot listen on %s:%u: %s\n", options.address.c_str(),
                     static_cast<unsigned>(options.port), error.message().c_str());
        return false;
    }
    // Scripts wait for this line instead of guessing when hosts may connect.
    std::printf("listening on %s:%u\n", options.address.c_str(), static_cast<unsigned>(server.Endpoint().port()));
    std::fflush(stdout);
    return true;
}

int Run(const Options& options) {
    asio::io_context context(1);
    SimulatedDevice device(options.identity);
    Server server(context, device);
    // Before anybody is told that the device is there: who then asks it to end is heard.
    asio::signal_set endSignals(context, SIGINT, SIGTERM);
    endSignals.async_wait([&](asio::error_code, int) { context.stop(); });
    if (!Listen(server, options)) {
        return 1;
    }
    const PanelInput panel(context, [&](std::string_view line) { ObeyLine(line, device, server, context); });
    context.run();
    return 0;
}

}  // namespace

}  // namespace Morquil::Simulator

int main(int argumentCount, char** arguments) {
    int exitStatus = 0;
    const auto options = Morquil::Simulator::ReadOptions(argumentCount, arguments, exitStatus);
    return options ? Morquil::Simulator::Run(*options) : exitStatus;
}
