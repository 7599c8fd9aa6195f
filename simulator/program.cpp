#include "simulator/program.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <utility>

#include "simulator/text_lines.h"

namespace Morquil::Simulator {

namespace {

constexpr int listeningFailure = 1;

void Complain(const std::string& text) {
    std::fprintf(stderr, "morquil-sim: %s\n", text.c_str());
}

int Unusable(const std::string& file, const std::string& why) {
    Complain(file + ": " + why);
    return usageError;
}

std::optional<std::string> ContentOf(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    std::string content;
    std::array<char, 4096> piece{};
    while (stream) {
        stream.read(piece.data(), piece.size());
        content.append(piece.data(), static_cast<std::size_t>(stream.gcount()));
    }
    // A folder can be opened, but not read to its end.
    return stream.eof() ? std::optional(std::move(content)) : std::nullopt;
}

/// Reads a file; says so when that is impossible.
std::optional<std::string> ReadOrComplain(const std::string& file) {
    std::optional<std::string> content = ContentOf(file);
    if (!content) {
        Unusable(file, "cannot be read; the name of a file is expected");
    }
    return content;
}

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

}  // namespace

Program::Program(Options options) : options_(std::move(options)) {}

Program::~Program() = default;

Program::Moment Program::Now() const {
    return std::chrono::duration_cast<Moment>(std::chrono::steady_clock::now() - start_);
}

int Program::Start() {
    int status = options_.replayFile.empty() ? PrepareSimulation() : PrepareReplay();
    if (status == 0) {
        status = PrepareScript();
    }
    if (status == 0) {
        status = PrepareRecording();
    }
    return status == 0 ? Listen() : status;
}

int Program::PrepareReplay() {
    const auto text = ReadOrComplain(options_.replayFile);
    if (!text) {
        return usageError;
    }
    const ConversationReading reading = ReadConversation(*text);
    if (!reading.complaint.empty()) {
        return Unusable(options_.replayFile, reading.complaint);
    }
    if (reading.events.empty()) {
        return Unusable(options_.replayFile, "holds no conversation; what --record has written is expected");
    }
    replay_.emplace(reading.events, Complain);
    return 0;
}

int Program::PrepareSimulation() {
    simulation_.emplace(options_.identity, options_.faults);
    if (options_.settingsFile.empty()) {
        return 0;
    }
    const auto text = ReadOrComplain(options_.settingsFile);
    if (!text) {
        return usageError;
    }
    const std::string complaint = simulation_->LoadSettings(*text, Moment{0});
    return complaint.empty() ? 0 : Unusable(options_.settingsFile, complaint);
}

int Program::PrepareScript() {
    if (options_.scriptFile.empty()) {
        return 0;
    }
    const auto text = ReadOrComplain(options_.scriptFile);
    if (!text) {
        return usageError;
    }
    ScriptReading script = ReadScript(*text);
    if (!script.complaint.empty()) {
        return Unusable(options_.scriptFile, script.complaint);
    }
    for (ScriptLine& line : script.lines) {
        fileScript_.Add(std::move(line), Moment{0});
    }
    return 0;
}

int Program::PrepareRecording() {
    Station& station = replay_ ? static_cast<Station&>(*replay_) : *simulation_;
    if (!options_.recordFile.empty()) {
        record_ = std::make_unique<std::ofstream>(options_.recordFile, std::ios::binary);
        if (!*record_) {
            return Unusable(options_.recordFile, "cannot be written; a file in a folder that exists is expected");
        }
        // Each line is on its way at once: the recording is complete however the program ends.
        recorder_.emplace(station, [this](const std::string& text) { *record_ << text << std::flush; });
    }
    server_.emplace(context_, recorder_ ? static_cast<Station&>(*recorder_) : station,
                    Server::Surroundings{.now = [this] { return Now(); },
                                         .onHostsChanged = [this] { asio::post(context_, [this] { RunScripts(); }); }});
    return 0;
}

int Program::Listen() {
    asio::error_code error;
    const asio::ip::address address = asio::ip::make_address(options_.address, error);
    if (!error) {
        error = server_->Listen({address, options_.port});
    }
    if (error) {
        std::fprintf(stderr, "morquil-sim: cannot listen on %s:%u: %s\n", options_.address.c_str(),
                     static_cast<unsigned>(options_.port), error.message().c_str());
        return listeningFailure;
    }
    start_ = std::chrono::steady_clock::now();
    // Scripts wait for this line instead of guessing when hosts may connect.
    std::printf("listening on %s:%u\n", options_.address.c_str(), static_cast<unsigned>(Endpoint().port()));
    std::fflush(stdout);
    return 0;
}

int Program::Run() {
    asio::post(context_, [this] { RunScripts(); });
    const auto working = asio::make_work_guard(context_);
    context_.run();
    return record_ && !*record_ ? Unusable(options_.recordFile, "could not be written completely") : 0;
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

void Program::Obey(std::string line) {
    asio::post(context_, [this, line = std::move(line)] { TakeLine(line); });
}

void Program::TakeLine(const std::string& text) {
    ScriptLineReading reading = ReadScriptLine(text);
    if (!reading.complaint.empty()) {
        Complain(reading.complaint);
    } else if (reading.line) {
        typedScript_.Add(std::move(*reading.line), Now());
        RunScripts();
    }
}

void Program::RunScripts() {
    for (ScriptRunner* script : {&fileScript_, &typedScript_}) {
        while (const auto command = script->Next(Now(), server_->HostCount())) {
            CarryOutNow(*command);
            if (context_.stopped()) {
                return;
            }
        }
    }
    AwaitScripts();
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
        std::printf("%s", ScriptHelp().c_str());
        std::fflush(stdout);
    } else if (!simulation_) {
        Complain("what is replayed obeys nobody; only help and quit are possible");
    } else {
        const PanelOutcome outcome = CarryOut(command, *simulation_, Now());
        if (!outcome.refusal.empty()) {
            Complain(outcome.refusal);
        }
        PrintReport(outcome.report);
        server_->SendAll();
    }
}

}  // namespace Morquil::Simulator
