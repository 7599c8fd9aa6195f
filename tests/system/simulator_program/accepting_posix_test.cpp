#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include "simulator/program/server.h"
#include "simulator/program/simulation.h"
#include "tests/system/simulator_program/raw_host.h"

namespace Morquil::Simulator {
namespace {

using namespace std::chrono_literals;
using Morquil::Testing::RawHost;

/// During its scope this process can open no more descriptors.
class NoMoreDescriptors {
public:
    NoMoreDescriptors() {
        getrlimit(RLIMIT_NOFILE, &before_);
        const int lowestFree = dup(STDERR_FILENO);
        close(lowestFree);
        rlimit limit = before_;
        limit.rlim_cur = static_cast<rlim_t>(lowestFree);
        setrlimit(RLIMIT_NOFILE, &limit);
    }
    ~NoMoreDescriptors() { setrlimit(RLIMIT_NOFILE, &before_); }
    NoMoreDescriptors(const NoMoreDescriptors&) = delete;
    NoMoreDescriptors& operator=(const NoMoreDescriptors&) = delete;

private:
    rlimit before_{};
};

TEST(Server, WaitsForDescriptorsWithoutSpinning) {
    asio::io_context context{1};
    Simulation simulation({}, {});
    int errors = 0;
    Server server(context, simulation,
                  {.now = [] { return 0ms; },
                   .onHostsChanged = [&] { context.stop(); },
                   .onAcceptFailed =
                       [&](asio::error_code error) {
                           EXPECT_EQ(error, asio::error::no_descriptors);
                           ++errors;
                       }});
    ASSERT_FALSE(server.Bind({asio::ip::address_v4::loopback(), 0}));
    ASSERT_FALSE(server.Listen());
    RawHost host("127.0.0.1", server.Endpoint().port());
    {
        const NoMoreDescriptors scarcity;
        EXPECT_LT(context.run_for(350ms), 20U) << "handlers";
    }
    EXPECT_EQ(errors, 1);
    EXPECT_EQ(server.HostCount(), 0U);
    context.run_for(10s);
    EXPECT_EQ(server.HostCount(), 1U);
}

}  // namespace
}  // namespace Morquil::Simulator
