#pragma once

#include <asio.hpp>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "simulator/options.h"
#include "simulator/recorder.h"
#include "simulator/replay.h"
#include "simulator/script.h"
#include "simulator/server.h"
#include "simulator/simulation.h"

namespace Morquil::Simulator {

/// The whole program but for its command line and its standard input: a device on the network, or the recording of
/// one, and what somebody orders meanwhile. It prints what it has to say.
class Program {
public:
    explicit Program(Options options);
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    /// Reads the files and starts to listen. Returns: 0, or the exit status after it has been said why.
    int Start();
    /// Serves hosts until it is stopped. Returns: the exit status.
    int Run();
    /// Ends `Run` when somebody wants the program to end.
    void EndOnSignals();

    /// The address and port that hosts can connect to, once started.
    asio::ip::tcp::endpoint Endpoint() const { return server_->Endpoint(); }

    /// Threads: any.
    void Stop() { context_.stop(); }
    /// A line of a script, which is carried out behind all that came before it. Threads: any.
    void Obey(std::string line);

private:
    using Moment = Station::Moment;

    int PrepareReplay();
    int PrepareSimulation();
    int PrepareScript();
    int PrepareRecording();
    int Listen();

    Moment Now() const;
    void TakeLine(const std::string& line);
    void RunScripts();
    void AwaitScripts();
    void CarryOutNow(const OperatorCommand& command);

    Options options_;
    asio::io_context context_{1};
    asio::signal_set endSignals_{context_};
    asio::steady_timer scriptTimer_{context_};
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
    std::optional<Simulation> simulation_;
    std::optional<Replay> replay_;
    std::unique_ptr<std::ostream> record_;
    std::optional<Recorder> recorder_;
    std::optional<Server> server_;
    // A script of a file does not wait for one that somebody types, nor the other way round.
    ScriptRunner fileScript_;
    ScriptRunner typedScript_;
};

}  // namespace Morquil::Simulator
