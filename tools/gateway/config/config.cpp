#include "gateway/config/config.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <iterator>
#include <limits>
#include <set>

#define TOML_EXCEPTIONS 0
#define TOML_HEADER_ONLY 1
#include <toml++/toml.h>

#include "properties/suggestion.h"

namespace Morquil::Gateway {
namespace {

/// Reads the members of one table, and notes what is wrong with them.
class TableReader {
public:
    TableReader(const toml::table& table, std::vector<ConfigFault>& faults) : table_(table), faults_(faults) {}

    void Read(std::string_view key, std::string& target) {
        Take(key, "a text", [&](const toml::node& node) { return Assign(node.value_exact<std::string>(), target); });
    }
    void Read(std::string_view key, bool& target) {
        Take(key, "true or false", [&](const toml::node& node) { return Assign(node.value_exact<bool>(), target); });
    }
    void Read(std::string_view key, std::vector<std::string>& target) {
        Take(key, "a list of texts", [&](const toml::node& node) { return ReadTexts(node, target); });
    }
    template <class Number>
    void Read(std::string_view key, Number& target, std::int64_t smallest, std::int64_t largest) {
        const toml::node* const node = Find(key);
        if (node == nullptr) {
            return;
        }
        const std::optional<std::int64_t> number = node->value_exact<std::int64_t>();
        if (!number) {
            Refuse(*node, std::string(key) + ": expected a whole number");
        } else if (*number < smallest || *number > largest) {
            Refuse(*node, std::string(key) + ": " + std::to_string(*number) + " is outside " +
                              std::to_string(smallest) + " to " + std::to_string(largest));
        } else {
            target = Number(static_cast<std::uint32_t>(*number));
        }
    }

    /// Refuses what nothing has asked for.
    void End() {
        for (const auto& [key, node] : table_) {
            if (known_.count(key.str()) == 0) {
                const std::vector<std::string_view> names(known_.begin(), known_.end());
                const std::string_view nearest = Properties::Nearest(key.str(), names);
                Refuse(key.source(), "unknown key '" + std::string(key.str()) + "'" +
                                         (nearest.empty() ? "" : "; did you mean '" + std::string(nearest) + "'?"));
            }
        }
    }

    const toml::node* Find(std::string_view key) {
        known_.insert(key);
        return table_.get(key);
    }
    void Refuse(const toml::node& node, std::string sentence) { Refuse(node.source(), std::move(sentence)); }
    void Refuse(const toml::source_region& source, std::string sentence) {
        faults_.push_back({source.begin.line, source.begin.column, std::move(sentence)});
    }

private:
    template <class Value>
    static bool Assign(std::optional<Value> value, Value& target) {
        if (value) {
            target = *std::move(value);
        }
        return value.has_value();
    }

    static bool ReadTexts(const toml::node& node, std::vector<std::string>& target) {
        const toml::array* const array = node.as_array();
        if (array == nullptr) {
            return false;
        }
        target.clear();
        return std::all_of(array->begin(), array->end(), [&](const toml::node& item) {
            target.emplace_back();
            return Assign(item.value_exact<std::string>(), target.back());
        });
    }

    template <class Reader>
    void Take(std::string_view key, std::string_view expected, Reader reader) {
        const toml::node* const node = Find(key);
        if (node != nullptr && !reader(*node)) {
            Refuse(*node, std::string(key) + ": expected " + std::string(expected));
        }
    }

    const toml::table& table_;
    std::vector<ConfigFault>& faults_;
    std::set<std::string_view> known_;
};

constexpr std::int64_t mostSeconds = 3'600;

void ReadServer(const toml::table& table, ServerConfig& server, std::vector<ConfigFault>& faults) {
    TableReader reader(table, faults);
    reader.Read("address", server.address);
    reader.Read("port", server.port, 0, std::numeric_limits<std::uint16_t>::max());
    reader.Read("certificate", server.certificate);
    reader.Read("key", server.key);
    reader.Read("insecure", server.insecure);
    reader.Read("hosts", server.hosts);
    reader.Read("connections", server.connections, 1, 100'000);
    reader.Read("body-bytes", server.bodyBytes, 1'024, 64 * 1'048'576);
    reader.Read("header-bytes", server.headerBytes, 1'024, 1'048'576);
    reader.Read("request-seconds", server.requestTime, 1, mostSeconds);
    reader.Read("idle-seconds", server.idleTime, 1, mostSeconds);
    reader.End();
    if (server.certificate.empty() != server.key.empty()) {
        reader.Refuse(table, "certificate and key belong together: give both or neither");
    }
}

void ReadStore(const toml::table& table, StoreConfig& store, std::vector<ConfigFault>& faults) {
    TableReader reader(table, faults);
    reader.Read("folder", store.folder);
    reader.Read("history-days", store.historyDays, 1, 36'500);
    reader.Read("history-megabytes", store.historyMegabytes, 1, 1'048'576);
    reader.End();
}

void ReadDevice(const toml::table& table, std::vector<DeviceEntry>& devices, std::vector<ConfigFault>& faults) {
    DeviceEntry entry;
    const std::size_t before = faults.size();
    TableReader reader(table, faults);
    reader.Read("name", entry.name);
    reader.Read("label", entry.label);
    reader.Read("address", entry.address);
    reader.Read("room", entry.room);
    reader.Read("tags", entry.tags);
    reader.Read("enabled", entry.enabled);
    reader.End();
    if (faults.size() != before) {
        return;
    }
    if (const std::optional<std::string> fault = FaultOf(entry)) {
        reader.Refuse(table, *fault);
        return;
    }
    const bool isTwice =
        std::any_of(devices.begin(), devices.end(), [&](const DeviceEntry& other) { return other.name == entry.name; });
    if (isTwice) {
        reader.Refuse(table, "name: there are two devices '" + entry.name + "'");
        return;
    }
    devices.push_back(std::move(entry));
}

void ReadDevices(const toml::node& node, TableReader& reader, Config& config, std::vector<ConfigFault>& faults) {
    const toml::array* const array = node.as_array();
    if (array == nullptr || !array->is_homogeneous<toml::table>()) {
        reader.Refuse(node, "device: expected tables, each under [[device]]");
        return;
    }
    for (const toml::node& item : *array) {
        ReadDevice(*item.as_table(), config.devices, faults);
    }
}

template <class Section>
void ReadSection(TableReader& reader, std::string_view key, Section& section, std::vector<ConfigFault>& faults,
                 void (*read)(const toml::table&, Section&, std::vector<ConfigFault>&)) {
    const toml::node* const node = reader.Find(key);
    if (node == nullptr) {
        return;
    }
    if (const toml::table* const table = node->as_table()) {
        read(*table, section, faults);
    } else {
        reader.Refuse(*node, std::string(key) + ": expected a table, under [" + std::string(key) + "]");
    }
}

Config ReadRoot(const toml::table& root, std::vector<ConfigFault>& faults) {
    Config config;
    TableReader reader(root, faults);
    ReadSection(reader, "server", config.server, faults, &ReadServer);
    ReadSection(reader, "store", config.store, faults, &ReadStore);
    if (const toml::node* const devices = reader.Find("device")) {
        ReadDevices(*devices, reader, config, faults);
    }
    reader.End();
    return config;
}

}  // namespace

std::string ConfigFault::In(std::string_view file) const {
    if (line == 0) {
        return std::string(file) + ": " + sentence;
    }
    return std::string(file) + ":" + std::to_string(line) + ":" + std::to_string(column) + ": " + sentence;
}

ConfigReading ReadConfig(std::string_view text) {
    std::vector<ConfigFault> faults;
    const toml::parse_result parsed = toml::parse(text);
    if (!parsed) {
        const toml::source_position at = parsed.error().source().begin;
        faults.push_back({at.line, at.column, std::string(parsed.error().description())});
        return faults;
    }
    Config config = ReadRoot(parsed.table(), faults);
    if (faults.empty()) {
        return config;
    }
    std::stable_sort(faults.begin(), faults.end(), [](const ConfigFault& one, const ConfigFault& other) {
        return std::pair(one.line, one.column) < std::pair(other.line, other.column);
    });
    return faults;
}

ConfigReading ReadConfigFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    if (!file) {
        return std::vector{ConfigFault{0, 0, std::string("cannot be read: ") + std::strerror(errno)}};
    }
    return ReadConfig(std::string((std::istreambuf_iterator<char>(file)), {}));
}

}  // namespace Morquil::Gateway
