#include "tests/system/command/invocation.h"

#include <chrono>

namespace Morquil::Testing {

RunningCommand::RunningCommand(const std::string& address, std::vector<std::string> arguments,
                               Circumstances circumstances)
    : thread_([this, address, words = std::move(arguments), circumstances = std::move(circumstances)] {
          const Command::Surroundings surroundings{
              .terminal = {.out =
                               [this](std::string_view text) {
                                   AwaitRelease();
                                   Append(outcome_.out, text);
                               },
                           .err = [this](std::string_view text) { Append(outcome_.err, text); },
                           .openScreen = circumstances.openScreen},
              .defaultAddress = address,
              .groupsFile = circumstances.groupsFile,
              .longestSilence = circumstances.longestSilence,
              .isInterrupted = isInterrupted_};
          outcome_.code = RunProgram(words, surroundings);
      }) {}

RunningCommand::~RunningCommand() {
    ReleaseOutput();
    Interrupt();
    Join();
}

Outcome RunningCommand::Join() {
    if (thread_.joinable()) {
        thread_.join();
    }
    return outcome_;
}

bool RunningCommand::Await(const std::string& stream, const std::string& text) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(10), [&] { return stream.find(text) != std::string::npos; });
}

void RunningCommand::SetHeld(bool isHeld) {
    const std::lock_guard lock(mutex_);
    isHeld_ = isHeld;
    changed_.notify_all();
}

void RunningCommand::AwaitRelease() {
    std::unique_lock lock(mutex_);
    changed_.wait(lock, [this] { return !isHeld_; });
}

void RunningCommand::Append(std::string& stream, std::string_view text) {
    const std::lock_guard lock(mutex_);
    stream += text;
    changed_.notify_all();
}

Outcome RunCommand(const std::string& address, std::vector<std::string> arguments, Circumstances circumstances) {
    return RunningCommand(address, std::move(arguments), std::move(circumstances)).Join();
}

}  // namespace Morquil::Testing
