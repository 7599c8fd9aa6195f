#include "protocol/blocks/network_config.h"

#include <gtest/gtest.h>

#include <string>

#include "tests/unit/protocol/blocks/golden_block.h"

namespace Morquil {
namespace {

using Network = NetworkConfigChangeSet;

// clang-format off
const GoldenBlock<Network> network{"NETWORK CONFIG", {
    {"Friendly name: Rack 1",  &Network::friendlyName, "Rack 1"},
    {"DHCP enabled: false",    &Network::dhcpEnabled,  false},
    {"IP address: 3232238140", &Network::ipAddress,    3232238140U},
    {"Gateway: 3232238081",    &Network::gateway,      3232238081U},
    {"Subnet: 4294967040",     &Network::subnet,       4294967040U}}};
// clang-format on

TEST(NetworkConfigBlock, ReadsAndWritesEveryLine) {
    network.ExpectReadsAndWritesEveryLine();
}

TEST(NetworkConfigBlock, WritesItsLinesInOrder) {
    network.ExpectWritesItsLinesInOrder();
}

TEST(NetworkConfigBlock, ReportsBadValuesAndUnknownKeys) {
    network.ExpectReports({NotAValue("DHCP enabled", "1"),
                           NotAValue("IP address", "x"),
                           NotAValue("Gateway", "x"),
                           NotAValue("Subnet", "x"),
                           {"DNS: 1", "Unknown network config line \"DNS\"\n"}});
}

TEST(NetworkConfigBlock, ReadsAnAddressAsOneNumberAndNeverInDottedForm) {
    EXPECT_EQ(FedWith("NETWORK CONFIG", "IP address: 192.168.10.60")->sink.Last<Network>().ipAddress.Get(), 192U);
}

TEST(NetworkConfigBlock, KeepsTheFirst49CharactersOfAName) {
    EXPECT_EQ(WrittenBack<Network>("NETWORK CONFIG", "Friendly name: " + std::string(60, 'n')),
              "NETWORK CONFIG:\nFriendly name: " + std::string(49, 'n') + "\n\n");
}

TEST(NetworkConfigBlock, KeepsColonsAndTrailingSpacesOfAName) {
    EXPECT_EQ(FedWith("NETWORK CONFIG", "Friendly name: a: b: ")->sink.Last<Network>().friendlyName.Get(), "a: b: ");
}

}  // namespace
}  // namespace Morquil
