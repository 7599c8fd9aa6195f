#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <utility>

#include "simulator/program/program.h"

namespace Morquil::Testing {

/// The simulated device's program on a thread of the test: on the network, with any options and faults.
class RunningProgram {
public:
    using Options = Simulator::Options;

    /// At 127.0.0.1 and a port that the system chooses, for hosts that can connect to any port.
    static std::unique_ptr<RunningProgram> AtAnyPort(Options options) {
        options.port = 0;
        return At(options);
    }

    /// At exactly this address and port. Returns: null if they are taken.
    static std::unique_ptr<RunningProgram> At(const Options& options) {
        std::unique_ptr<RunningProgram> running(new RunningProgram(options));
        if (running->program_.Start() != 0) {
            return nullptr;
        }
        running->thread_ = std::thread([program = running.get()] { program->exitStatus_ = program->program_.Run(); });
        return running;
    }

    /// At the port of all devices and an address at which nothing listens, for hosts that connect to that port only.
    static std::unique_ptr<RunningProgram> AtAnyAddress(Options options) {
        std::unique_ptr<RunningProgram> running;
        for (int attempts = 0; attempts < 20 && running == nullptr; ++attempts) {
            options.address = AnyLoopbackAddress();
            running = At(options);
        }
        return running;
    }

    ~RunningProgram() {
        program_.Stop();
        AwaitEnd();
    }
    RunningProgram(const RunningProgram&) = delete;
    RunningProgram& operator=(const RunningProgram&) = delete;

    std::string Address() const { return program_.Endpoint().address().to_string(); }
    std::uint16_t Port() const { return program_.Endpoint().port(); }
    /// A line, as from standard input.
    void Submit(std::string line) { program_.Submit(std::move(line)); }
    /// Waits for the end, which is triggered elsewhere. Returns: the exit status.
    int AwaitEnd() {
        if (thread_.joinable()) {
            thread_.join();
        }
        return exitStatus_;
    }

private:
    explicit RunningProgram(const Options& options) : program_(options) {}

    static std::string AnyLoopbackAddress() {
        static std::mt19937 numbers{std::random_device()()};
        std::string address = "127";
        for (int i = 0; i < 3; ++i) {
            address += "." + std::to_string(2 + numbers() % 250);
        }
        return address;
    }

    Simulator::Program program_;
    int exitStatus_ = -1;
    std::thread thread_;
};

}  // namespace Morquil::Testing
