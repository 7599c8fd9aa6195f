// gateway.toml.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "gateway/config/device_entry.h"

namespace Morquil::Gateway {

struct ServerConfig {
    std::string address = "127.0.0.1";
    std::uint16_t port = 9880;
    std::string certificate = {};  // files in PEM form; both or none
    std::string key = {};
    bool insecure = false;                 // beyond loopback without TLS
    std::vector<std::string> hosts = {};   // names, besides its addresses, by which browsers reach the gateway
    std::uint32_t connections = 12'000;    // most at once
    std::uint32_t bodyBytes = 1'048'576;   // largest body of a request
    std::uint32_t headerBytes = 16'384;    // largest head of a request
    std::chrono::seconds requestTime{10};  // for a whole request to arrive
    std::chrono::seconds idleTime{75};     // between two requests of a connection

    bool IsSecure() const { return !certificate.empty(); }
    bool operator==(const ServerConfig& other) const = default;
};

struct StoreConfig {
    std::string folder = {};  // where the database and the edited fleet are; empty: next to the configuration
    std::uint32_t historyDays = 90;
    std::uint32_t historyMegabytes = 2'048;

    bool operator==(const StoreConfig& other) const = default;
};

struct Config {
    ServerConfig server;
    StoreConfig store;
    std::vector<DeviceEntry> devices;
};

/// Where a configuration is wrong, and why: "gateway.toml:12:3: port: 99999 is outside 1 to 65535".
struct ConfigFault {
    std::uint32_t line = 0;
    std::uint32_t column = 0;
    std::string sentence;

    std::string In(std::string_view file) const;
};

/// Everything that is wrong, in the order of the file.
using ConfigReading = std::variant<Config, std::vector<ConfigFault>>;

ConfigReading ReadConfig(std::string_view text);
/// The same from a file. One that cannot be read is a fault without a line.
ConfigReading ReadConfigFile(const std::string& path);

}  // namespace Morquil::Gateway
