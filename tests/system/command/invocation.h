#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "command/program/program.h"

namespace Morquil::Testing {

/// The outcome of a run of the command line.
struct Outcome {
    Command::ExitCode code;
    std::string out;
    std::string err;
};

/// What a test changes about the program's environment.
struct Circumstances {
    std::chrono::milliseconds longestSilence = std::chrono::seconds(18);
    std::function<std::unique_ptr<Command::Screen>()> openScreen = {};
    std::string groupsFile = {};
};

/// Runs the command line to its end; the device is at `address`.
Outcome RunCommand(const std::string& address, std::vector<std::string> arguments, Circumstances circumstances = {});

/// A command that does not end by itself, on its own thread.
class RunningCommand {
public:
    RunningCommand(const std::string& address, std::vector<std::string> arguments, Circumstances circumstances = {});
    ~RunningCommand();
    RunningCommand(const RunningCommand&) = delete;
    RunningCommand& operator=(const RunningCommand&) = delete;

    /// Waits until standard output or standard error holds `text`. Returns: whether they did within 10 s.
    bool AwaitOut(const std::string& text) { return Await(outcome_.out, text); }
    bool AwaitErr(const std::string& text) { return Await(outcome_.err, text); }

    /// From here on writes to standard output block, as on a full pipe, until it is released.
    void HoldOutput() { SetHeld(true); }
    void ReleaseOutput() { SetHeld(false); }

    /// Like Ctrl-C.
    void Interrupt() { isInterrupted_ = true; }
    /// Waits for the end.
    Outcome Join();

private:
    bool Await(const std::string& stream, const std::string& text);
    void Append(std::string& stream, std::string_view text);
    void SetHeld(bool isHeld);
    void AwaitRelease();

    std::atomic<bool> isInterrupted_{false};
    std::mutex mutex_;
    std::condition_variable changed_;
    bool isHeld_ = false;
    Outcome outcome_{Command::ExitCode::Done, {}, {}};
    std::thread thread_;
};

}  // namespace Morquil::Testing
