#include "simulator/program/program.h"

#include <algorithm>
#include <csignal>
#include <utility>

#include "simulator/program/fleet.h"
#include "simulator/streams/input_file.h"
#include "simulator/text/text_lines.h"

namespace Morquil::Simulator {

namespace {

constexpr int listeningFailure = 1;

// A file without an end, such as /dev/zero, is refused.
constexpr std::size_t mebibyte = std::size_t{1024} * 1024;
constexpr std::size_t longestTextFile = 4 * mebibyte;
constexpr std::size_t longestRecording = 64 * mebibyte;

/// When this many lines of standard input are pending, reading pauses.
constexpr std::size_t pendingLinesLimit = 1000;

/// After this many commands in a row, hosts and end signals get a turn.
constexpr int commandsInARow = 64;

}  // namespace

Program::Program(Options options) : options_(std::move(options)), pendingLines_(pendingLinesLimit) {}

Program::~Program() = default;

Program::Moment Program::Now() const {
    return std::chrono::duration_cast<Moment>(std::chrono::steady_clock::now() - start_);
}

int Program::ReportUnusable(const std::string& file, const std::string& why) {
    console_.PrintError(file + ": " + why);
    return usageError;
}

std::optional<std::string> Program::ReadOrReport(const std::string& file, std::size_t limit) {
    FileReading reading = ReadInputFile(file, limit);
    if (!reading.error.empty()) {
        ReportUnusable(file, reading.error);
        return std::nullopt;
    }
    return std::move(reading.content);
}

int Program::Prepare() {
    int status = options_.replayFile.empty() ? PrepareSimulations() : PrepareReplay();
    if (status == 0) {
        status = PrepareScript();
    }
    if (status == 0) {
        status = PrepareRecording();
    }
    if (status == 0) {
        PrepareServers();
    }
    return status;
}

int Program::PrepareReplay() {
    const auto text = ReadOrReport(options_.replayFile, longestRecording);
    if (!text) {
        return usageError;
    }
    const ConversationReading reading = ReadConversation(*text);
    if (!reading.error.empty()) {
        return ReportUnusable(options_.replayFile, reading.error);
    }
    if (reading.events.empty()) {
        return ReportUnusable(options_.replayFile, "holds no conversation; expected a file that --record has written");
    }
    replay_.emplace(reading.events, [this](const std::string& difference) { console_.PrintError(difference); });
    return 0;
}

int Program::PrepareSimulations() {
    for (unsigned number = 1; number <= options_.DeviceCount(); ++number) {
        simulations_.emplace_back(IdentityOf(options_, number), FaultsOf(options_, number));
    }
    if (options_.settingsFile.empty()) {
        return 0;
    }
    const auto text = ReadOrReport(options_.settingsFile, longestTextFile);
    if (!text) {
        return usageError;
    }
    for (Simulation& simulation : simulations_) {
        const std::string error = simulation.LoadSettings(*text, Moment{0});
        if (!error.empty()) {
            return ReportUnusable(options_.settingsFile, error);
        }
    }
    return 0;
}

int Program::PrepareScript() {
    if (options_.scriptFile.empty()) {
        return 0;
    }
    const auto text = ReadOrReport(options_.scriptFile, longestTextFile);
    if (!text) {
        return usageError;
    }
    ScriptReading script = ReadScript(*text, options_.devices.value_or(0));
    if (!script.error.empty()) {
        return ReportUnusable(options_.scriptFile, script.error);
    }
    for (ScriptLine& line : script.lines) {
        fileScript_.Add(std::move(line), Moment{0});
    }
    return 0;
}

int Program::PrepareRecording() {
    if (!options_.recordFile.empty()) {
        Station& station = replay_ ? static_cast<Station&>(*replay_) : simulations_.front();
        record_.emplace(options_.recordFile);
        if (!record_->IsOpen()) {
            return ReportUnusable(options_.recordFile, "cannot be written");
        }
        recorder_.emplace(station, [this](const std::string& text) { Record(text); });
    }
    return 0;
}

void Program::PrepareServers() {
    if (recorder_ || replay_) {
        AddServer(recorder_ ? static_cast<Station&>(*recorder_) : *replay_);
        return;
    }
    for (Simulation& simulation : simulations_) {
        AddServer(simulation);
    }
}

void Program::AddServer(Station& station) {
    const unsigned number = servers_.Count() + 1;
    servers_.Add(context_, station,
                 {.now = [this] { return Now(); },
                  .onHostsChanged = [this] { asio::post(context_, [this] { RunScripts(); }); },
                  .onAcceptFailed =
                      [this, number](asio::error_code error) {
                          PrintError(number, "cannot accept hosts: " + error.message() + "; retrying until it works");
                      }});
}

void Program::Record(const std::string& text) {
    if (!record_->Write(text)) {
        ReportUnusable(options_.recordFile, "cannot be written; the recording ends here");
    }
}

int Program::Listen() {
    const std::string problem = servers_.Listen();
    if (!problem.empty()) {
        console_.PrintError(problem);
        return listeningFailure;
    }
    start_ = std::chrono::steady_clock::now();
    // Scripts wait for this line, so that they know when hosts can connect.
    console_.Print("listening on " + servers_.Addresses() + "\n");
    return 0;
}

int Program::Run() {
    asio::post(context_, [this] { RunScripts(); });
    const auto working = asio::make_work_guard(context_);
    context_.run();
    return FinishOutput();
}

int Program::FinishOutput() {
    const auto deadline = [] { return std::chrono::steady_clock::now() + BackgroundWriter::patience; };
    const int status = record_ && !record_->Finish(deadline())
                           ? ReportUnusable(options_.recordFile, "could not be written completely")
                           : 0;
    console_.Finish(deadline());
    return status;
}

void Program::Stop() {
    context_.stop();
    pendingLines_.Close();
}

void Program::EndOnSignals() {
    endSignals_.add(SIGINT);
    endSignals_.add(SIGTERM);
    endSignals_.async_wait([this](asio::error_code error, int /*signal*/) {
        if (!error) {
            Stop();
        }
    });
}

void Program::Submit(std::string line) {
    if (pendingLines_.Add()) {
        asio::post(context_, [this, line = std::move(line)] { ProcessLine(line); });
    }
}

void Program::ProcessLine(const std::string& text) {
    ScriptLineReading reading = ReadScriptLine(text, options_.devices.value_or(0));
    if (reading.line) {
        typedScript_.Add(std::move(*reading.line), Now());
        ++typedLines_;
        RunScripts();
        return;
    }
    pendingLines_.Remove(1);
    if (!reading.error.empty()) {
        console_.PrintError(reading.error);
    }
}

void Program::RunScripts() {
    const bool isFileDone = RunSome(fileScript_);
    const bool isTypedDone = RunSome(typedScript_);
    pendingLines_.Remove(typedLines_ - typedScript_.PendingCount());
    typedLines_ = typedScript_.PendingCount();
    if (isFileDone && isTypedDone) {
        AwaitScripts();
    } else if (!context_.stopped()) {
        asio::post(context_, [this] { RunScripts(); });
    }
}

bool Program::RunSome(ScriptRunner& script) {
    for (int count = 0; count < commandsInARow && !context_.stopped(); ++count) {
        const auto command = script.Next(Now(), [this](unsigned number) { return servers_.Of(number).HostCount(); });
        if (!command) {
            return true;
        }
        CarryOutNow(*command);
    }
    return false;
}

void Program::AwaitScripts() {
    const std::optional<Moment> first = fileScript_.NextDue();
    const std::optional<Moment> second = typedScript_.NextDue();
    scriptTimer_.cancel();
    if (first || second) {
        scriptTimer_.expires_at(start_ + std::min(first.value_or(Moment::max()), second.value_or(Moment::max())));
        scriptTimer_.async_wait([this](asio::error_code error) {
            if (!error) {
                RunScripts();
            }
        });
    }
}

void Program::CarryOutNow(const OperatorCommand& command) {
    if (command.kind == CommandKind::Quit) {
        Stop();
    } else if (command.kind == CommandKind::Help) {
        console_.Print(ScriptHelp());
    } else if (simulations_.empty()) {
        console_.PrintError("a replay accepts only the commands help and quit");
    } else {
        CarryOutAt(command.targets.first, command);
    }
}

void Program::CarryOutAt(unsigned number, const OperatorCommand& command) {
    Server& server = servers_.Of(number);
    const PanelOutcome outcome = CarryOut(command, simulations_[number - 1], Now());
    if (!outcome.refusal.empty()) {
        PrintError(number, outcome.refusal);
    }
    PrintReport(number, outcome.report);
    server.SendAll();
    if (command.kind == CommandKind::Offline) {
        server.GoOffline();
    } else if (command.kind == CommandKind::Online) {
        const std::string problem = servers_.GoOnline(number);
        if (!problem.empty()) {
            PrintError(number, problem);
        }
    } else if (command.kind == CommandKind::Status) {
        console_.Print(Prefix(number) + "status: " + servers_.Status(number) + "\n");
    }
}

std::string Program::Prefix(unsigned number) const {
    return servers_.Count() > 1 ? "@" + std::to_string(number) + " " : std::string();
}

void Program::PrintError(unsigned number, const std::string& text) {
    console_.PrintError(Prefix(number) + text);
}

void Program::PrintReport(unsigned number, const std::string& report) {
    std::string header;
    ForEachLine(report, [&](std::string_view line) {
        if (line.empty()) {
            header.clear();
        } else if (header.empty()) {
            header = line;
        } else {
            console_.Print(Prefix(number) + "panel: " + header + " " + std::string(line) + "\n");
        }
    });
}

}  // namespace Morquil::Simulator
