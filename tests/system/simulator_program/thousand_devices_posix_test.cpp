#include <gtest/gtest.h>
#include <sys/resource.h>

#include <fstream>
#include <limits>

#include "simulator/program/descriptor_limit.h"
#include "tests/system/simulator_program/child_program.h"
#include "tests/system/simulator_program/raw_host.h"

namespace Morquil::Testing {
namespace {

constexpr unsigned deviceCount = 1000;

std::string AddressOf(unsigned number) {
    return "127.0." + std::to_string(number / 256) + "." + std::to_string(number % 256);
}

/// The number that the system gives for a process; 0 if there is none.
std::size_t ProcessNumber(pid_t process, const std::string& name) {
    std::ifstream file("/proc/" + std::to_string(process) + "/status");
    for (std::string word; file >> word;) {
        if (word == name + ":") {
            std::size_t number = 0;
            file >> number;
            return number;
        }
    }
    return 0;
}

TEST(ThousandDevices, ServeAThousandHostsWithFewThreadsAndLittleMemory) {
    Simulator::RaiseDescriptorLimit(5 * deviceCount);  // each host has an event loop of its own
    const auto start = std::chrono::steady_clock::now();
    ChildProgram program({"--devices", std::to_string(deviceCount)});
    const std::uint16_t port = program.AwaitPort();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    std::vector<std::unique_ptr<RawHost>> hosts;
    for (unsigned number = 1; number <= deviceCount; ++number) {
        hosts.push_back(std::make_unique<RawHost>(AddressOf(number), port));
        hosts.back()->Send("PING\n\n");
    }
    for (unsigned number = 1; number <= deviceCount; ++number) {
        const std::string greeting = hosts[number - 1]->ReceiveUntil("\n\nACK\n\n");
        ASSERT_NE(greeting.find("\nModel name: Morquil Simulator " + std::to_string(number) + "\n"), std::string::npos)
            << number << ": " << greeting;
    }
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__) && !defined(__clang__)
    EXPECT_LT(ProcessNumber(program.Id(), "VmRSS"), 200U * 1024) << "KiB";
#endif
    EXPECT_LE(ProcessNumber(program.Id(), "Threads"), 8U);
    program.Write("@* drop\n@* wait-for-no-host\nquit\n");
    EXPECT_EQ(program.AwaitEnd(), 0);
}

TEST(DescriptorLimit, IsRaisedAsFarAsTheSystemAllowsAndNeverLowered) {
    rlimit before{};
    getrlimit(RLIMIT_NOFILE, &before);
    rlimit low = before;
    low.rlim_cur = 200;
    setrlimit(RLIMIT_NOFILE, &low);
    EXPECT_EQ(Simulator::RaiseDescriptorLimit(100), 200U);
    EXPECT_EQ(Simulator::RaiseDescriptorLimit(250), 250U);
    rlimit present{};
    getrlimit(RLIMIT_NOFILE, &present);
    EXPECT_EQ(present.rlim_cur, 250U);
    EXPECT_LE(Simulator::RaiseDescriptorLimit(std::numeric_limits<std::size_t>::max() / 4), before.rlim_max);
    setrlimit(RLIMIT_NOFILE, &before);
}

}  // namespace
}  // namespace Morquil::Testing
