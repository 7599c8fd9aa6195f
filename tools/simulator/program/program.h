#pragma once

#include <asio.hpp>
#include <chrono>
#include <deque>
#include <optional>
#include <string>

#include "simulator/conversation/recorder.h"
#include "simulator/conversation/replay.h"
#include "simulator/program/options.h"
#include "simulator/program/script.h"
#include "simulator/program/servers.h"
#include "simulator/program/simulation.h"
#include "simulator/streams/console.h"
#include "simulator/streams/pending_lines.h"
#include "simulator/streams/record_file.h"

namespace Morquil::Simulator {

/// The whole program except its command line and standard input: devices on the network, or a replayed one, and the
/// operator's commands. It prints its own messages.
class Program {
public:
    explicit Program(Options options);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Reads the files. Blocks while one of them is a pipe without data.
    /// Returns: 0, or the exit status, after printing the reason.
    int Prepare();
    /// Starts to listen, with all devices or none.
    /// Returns: as `Prepare` does.
    int Listen();
    /// Calls `Prepare`, then `Listen`.
    int Start() {
        const int status = Prepare();
        return status == 0 ? Listen() : status;
    }
    /// Serves hosts until it is stopped.
    /// Returns: the exit status.
    int Run();
    /// Makes the signals that end a program end `Run`.
    void EndOnSignals();

    /// The address and port at which hosts can connect to the first device, once the program has started.
    asio::ip::tcp::endpoint Endpoint() const { return servers_.Of(1).Endpoint(); }

    /// Threads: any.
    void Stop();
    /// Adds a line of a script, to be carried out after all earlier lines. Waits while 1000 lines are pending.
    /// Threads: any but the one in `Run`.
    void Submit(std::string line);

private:
    using Moment = Station::Moment;

    int PrepareReplay();
    int PrepareSimulations();
    int PrepareScript();
    int PrepareRecording();
    int ReportUnusable(const std::string& file, const std::string& why);
    std::optional<std::string> ReadOrReport(const std::string& file, std::size_t limit);
    void PrepareServers();
    void AddServer(Station& station);
    void Record(const std::string& text);
    int FinishOutput();

    Moment Now() const;
    void ProcessLine(const std::string& line);
    void RunScripts();
    /// Returns: whether the script has nothing left to do now.
    bool RunSome(ScriptRunner& script);
    void AwaitScripts();
    void CarryOutNow(const OperatorCommand& command);
    void CarryOutAt(unsigned number, const OperatorCommand& command);
    void PrintReport(unsigned number, const std::string& report);
    void PrintError(unsigned number, const std::string& text);
    /// What a message about a device begins with.
    std::string Prefix(unsigned number) const;

    Options options_;
    Console console_;
    asio::io_context context_{1};
    asio::signal_set endSignals_{context_};
    asio::steady_timer scriptTimer_{context_};
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    // The simulation and the server of each device, in the order of their numbers, which begin with 1.
    std::deque<Simulation> simulations_;
    std::optional<Replay> replay_;  // in place of a simulation
    std::optional<RecordFile> record_;
    std::optional<Recorder> recorder_;
    Servers servers_{options_};
    // A script file and a typed script do not wait for each other.
    ScriptRunner fileScript_;
    ScriptRunner typedScript_;
    PendingLines pendingLines_;
    std::size_t typedLines_ = 0;  // how many of the pending lines belong to the typed script
};

}  // namespace Morquil::Simulator
