#include "command/commands/fleet.h"

#include <algorithm>
#include <thread>

#include "command/output/rendering.h"

namespace Morquil::Command {
namespace {

/// The command's run for one of the devices.
struct Run {
    std::string address;
    ExitCode code = ExitCode::Done;
    std::string reason = {};  // of a failure
    Collected printed = {};
};

void Carry(Run& run, const Context& context, const std::function<void(const Context&)>& work) {
    [[maybe_unused]] const morquil::Apartment apartment;
    Options options = context.options;
    options.address = run.address;
    Terminal terminal = context.terminal;
    terminal.collected = &run.printed;
    const auto fail = [&run](ExitCode code, const char* reason) {
        run.code = code;
        run.reason = reason;
    };
    try {
        work(context.With(options, terminal));
    } catch (const Failure& failure) {
        fail(failure.Code(), failure.what());
    } catch (const morquil::Error& error) {
        fail(ExitCode::ConnectionLost, error.what());
    } catch (const std::exception& error) {
        fail(ExitCode::Usage, error.what());
    }
}

void PrintJsonOf(const Context& context, const std::vector<Run>& runs) {
    Json all = Json::object();
    for (const Run& run : runs) {
        Json document = run.printed.documents.empty() ? Json::object() : Json::parse(run.printed.documents.back());
        if (run.code != ExitCode::Done) {
            document["error"] = run.reason;
            document["exitCode"] = static_cast<int>(run.code);
        }
        all[run.address] = std::move(document);
    }
    PrintJson(context.terminal, all);
}

void PrintRowsOf(const Context& context, const std::vector<Run>& runs) {
    std::vector<Row> rows;
    for (const Run& run : runs) {
        for (const Row& row : run.printed.rows) {
            rows.emplace_back(row).insert(rows.back().begin(), Cell(run.address));
        }
    }
    PrintTable(context.terminal, rows);
}

// A failure of a connection names the device itself.
std::string WithAddress(const Run& run, const std::string& text) {
    return text.starts_with(run.address + ":") ? text : run.address + ": " + text;
}

void PrintMessagesOf(const Context& context, const Run& run) {
    for (const std::string& message : run.printed.messages) {
        PrintMessage(context.terminal, WithAddress(run, message));
    }
    if (run.code != ExitCode::Done && run.code != ExitCode::Interrupted) {
        PrintMessage(context.terminal, WithAddress(run, run.reason));
    }
}

[[noreturn]] void ThrowWorst(const std::vector<Run>& runs, std::size_t failures) {
    ExitCode worst = ExitCode::Done;
    for (const Run& run : runs) {
        worst = WorseOf(worst, run.code);
    }
    throw Failure(worst, std::to_string(failures) + " of " + std::to_string(runs.size()) + " devices failed");
}

}  // namespace

void RunForAll(const Context& context, const std::vector<std::string>& addresses,
               const std::function<void(const Context&)>& run) {
    if (addresses.size() == 1) {
        Options options = context.options;
        options.address = addresses.front();
        run(context.With(options));
        return;
    }
    std::vector<Run> runs;
    for (const std::string& address : addresses) {
        runs.push_back({address});
    }
    std::vector<std::thread> threads;
    for (Run& one : runs) {
        threads.emplace_back([&one, &context, &run] { Carry(one, context, run); });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    context.options.isJson ? PrintJsonOf(context, runs) : PrintRowsOf(context, runs);
    for (const Run& one : runs) {
        PrintMessagesOf(context, one);
    }
    const auto failures =
        std::count_if(runs.begin(), runs.end(), [](const Run& one) { return one.code != ExitCode::Done; });
    if (failures != 0) {
        ThrowWorst(runs, static_cast<std::size_t>(failures));
    }
}

}  // namespace Morquil::Command
