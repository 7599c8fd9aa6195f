#include "gateway/config/config.h"

#include <gtest/gtest.h>

namespace Morquil::Gateway {
namespace {

std::string FaultsOf(std::string_view text) {
    const ConfigReading reading = ReadConfig(text);
    std::string faults;
    if (const auto* const found = std::get_if<std::vector<ConfigFault>>(&reading)) {
        for (const ConfigFault& fault : *found) {
            faults += fault.In("g.toml") + "\n";
        }
    }
    return faults;
}

TEST(GatewayConfig, ReadsEverythingThatItHas) {
    const ConfigReading reading = ReadConfig(R"(
        [server]
        address = "0.0.0.0"
        port = 443
        certificate = "c.pem"
        key = "k.pem"
        hosts = ["gateway.example"]
        request-seconds = 3
        [store]
        folder = "/var/lib/x"
        history-days = 7
        [[device]]
        name = "cam-1"
        label = "Camera 1"
        address = "10.0.0.1"
        room = "Studio"
        tags = ["hd", "news"]
        enabled = false
    )");
    const Config* const config = std::get_if<Config>(&reading);
    ASSERT_NE(config, nullptr);
    EXPECT_EQ(config->server.address, "0.0.0.0");
    EXPECT_EQ(config->server.port, 443);
    EXPECT_TRUE(config->server.IsSecure());
    EXPECT_EQ(config->server.hosts, std::vector<std::string>{"gateway.example"});
    EXPECT_EQ(config->server.requestTime, std::chrono::seconds(3));
    EXPECT_EQ(config->store.historyDays, 7U);
    const DeviceEntry expected{"cam-1", "Camera 1", "10.0.0.1", "Studio", {"hd", "news"}, false};
    EXPECT_EQ(config->devices, std::vector<DeviceEntry>{expected});
}

TEST(GatewayConfig, AnEmptyFileIsAGatewayWithoutDevicesForThisMachineOnly) {
    const ConfigReading reading = ReadConfig("");
    ASSERT_TRUE(std::holds_alternative<Config>(reading));
    EXPECT_EQ(std::get<Config>(reading).server.address, "127.0.0.1");
    EXPECT_TRUE(std::get<Config>(reading).devices.empty());
}

struct Case {
    std::string_view text;
    std::string_view fault;
};
const Case cases[] = {
    {"[server]\nport = 99999\n", "g.toml:2:8: port: 99999 is outside 0 to 65535\n"},
    {"[server]\nport = \"80\"\n", "g.toml:2:8: port: expected a whole number\n"},
    {"[server]\nprot = 80\n", "g.toml:2:1: unknown key 'prot'; did you mean 'port'?\n"},
    {"[servr]\n", "g.toml:1:2: unknown key 'servr'; did you mean 'server'?\n"},
    {"server = 3\n", "g.toml:1:10: server: expected a table, under [server]\n"},
    {"[server]\nkey = \"k.pem\"\n", "g.toml:1:1: certificate and key belong together: give both or neither\n"},
    {"device = 3\n", "g.toml:1:10: device: expected tables, each under [[device]]\n"},
    {"[[device]]\nname = \"Cam 1\"\naddress = \"10.0.0.1\"\n",
     "g.toml:1:1: name: 'Cam 1' is not a name; use up to 63 letters a to z, digits and hyphens\n"},
    {"[[device]]\nname = \"a\"\naddress = \"10.0.0.1:9800\"\n",
     "g.toml:1:1: address: '10.0.0.1:9800' is neither a host name nor an IPv4 address, without a port\n"},
    {"[[device]]\nname = \"a\"\naddress = \"x\"\n[[device]]\nname = \"a\"\naddress = \"y\"\n",
     "g.toml:4:1: name: there are two devices 'a'\n"},
};

TEST(GatewayConfig, SaysInWhichLineAndColumnWhatIsWrong) {
    for (const Case& wrong : cases) {
        EXPECT_EQ(FaultsOf(wrong.text), wrong.fault) << wrong.text;
    }
}

TEST(GatewayConfig, SaysWhereTheSyntaxIsWrong) {
    const std::string faults = FaultsOf("[server]\nport = = 3\n");
    EXPECT_TRUE(faults.starts_with("g.toml:2:8: ")) << faults;
}

TEST(GatewayConfig, ListsAllFaultsInTheOrderOfTheFile) {
    const std::string faults = FaultsOf("[server]\nport = -1\ninsecure = 1\n");
    EXPECT_EQ(faults, "g.toml:2:8: port: -1 is outside 0 to 65535\ng.toml:3:12: insecure: expected true or false\n");
}

}  // namespace
}  // namespace Morquil::Gateway
