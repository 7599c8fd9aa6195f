#include "command/devices/named_devices.h"

#include <algorithm>
#include <sstream>

#include "command/arguments/exit_code.h"
#include "command/files/local_file.h"
#include "diagnosis/address.h"

namespace Morquil::Command {
namespace {

constexpr char groupMark = '@';
constexpr std::size_t mostBytes = std::size_t{1} << 20;
// Each device has a connection and a thread of its own.
constexpr std::size_t mostDevices = 256;

std::vector<std::string> LinesOf(std::string_view text) {
    std::istringstream stream{std::string(text)};
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line.substr(0, line.find('#')));
    }
    return lines;
}

std::vector<std::string> WordsOf(const std::string& line) {
    std::istringstream stream(line);
    std::vector<std::string> words;
    for (std::string word; stream >> word;) {
        words.push_back(word);
    }
    return words;
}

const std::vector<std::string>& FindGroup(const Groups& groups, const std::string& name, const std::string& file) {
    const auto found = groups.find(name);
    if (found == groups.end()) {
        throw UsageFailure("@" + name + ": there is no such group in " + file);
    }
    return found->second;
}

}  // namespace

Groups ParseGroups(std::string_view text) {
    Groups groups;
    std::size_t number = 0;
    for (const std::string& line : LinesOf(text)) {
        ++number;
        if (WordsOf(line).empty()) {
            continue;
        }
        const std::size_t colon = line.find(':');
        const std::vector<std::string> name = WordsOf(line.substr(0, colon));
        if (colon == std::string::npos || name.size() != 1) {
            throw UsageFailure("line " + std::to_string(number) + ": expected a group's name, a colon, and addresses");
        }
        const std::vector<std::string> addresses = WordsOf(line.substr(colon + 1));
        std::vector<std::string>& group = groups[name.front()];
        group.insert(group.end(), addresses.begin(), addresses.end());
    }
    return groups;
}

std::vector<std::string> NamesOfGroups(const std::string& file) {
    std::vector<std::string> names;
    try {
        for (const auto& [name, addresses] : ParseGroups(ReadLocalFile(file, mostBytes))) {
            names.push_back(name);
        }
    } catch (const UsageFailure&) {
        names.clear();  // the command that needs the file says what is wrong with it
    }
    return names;
}

std::vector<std::string> ParseDevices(std::string_view text) {
    std::vector<std::string> devices;
    for (const std::string& line : LinesOf(text)) {
        const std::vector<std::string> words = WordsOf(line);
        devices.insert(devices.end(), words.begin(), words.end());
    }
    return devices;
}

std::vector<std::string> ExpandDevices(const std::vector<std::string>& words, const std::string& groupsFile) {
    std::vector<std::string> addresses;
    std::optional<Groups> groups;
    const auto add = [&addresses](const std::string& address) {
        if (const std::optional<std::string> fault = Diagnosis::FaultOfAddress(address)) {
            throw UsageFailure(address + ": " + *fault);
        }
        if (std::find(addresses.begin(), addresses.end(), address) == addresses.end()) {
            addresses.push_back(address);
        }
    };
    for (const std::string& word : words) {
        if (!word.starts_with(groupMark)) {
            add(word);
            continue;
        }
        if (!groups) {
            groups = ParseGroups(ReadLocalFile(groupsFile, mostBytes));
        }
        const std::vector<std::string>& group = FindGroup(*groups, word.substr(1), groupsFile);
        std::for_each(group.begin(), group.end(), add);
    }
    if (addresses.size() > mostDevices) {
        throw UsageFailure(std::to_string(addresses.size()) + " devices: at most " + std::to_string(mostDevices) +
                           " at a time");
    }
    return addresses;
}

std::vector<std::string> DevicesOf(const Options& options, const std::string& defaultDevice,
                                   const std::string& groupsFile) {
    std::vector<std::string> words = options.devices;
    if (!options.devicesFile.empty()) {
        const std::vector<std::string> more = ParseDevices(ReadLocalFile(options.devicesFile, mostBytes));
        words.insert(words.end(), more.begin(), more.end());
    }
    if (words.empty()) {
        words.push_back(defaultDevice);
    }
    std::vector<std::string> addresses = ExpandDevices(words, groupsFile);
    if (addresses.empty()) {
        throw UsageFailure("no device is named");
    }
    return addresses;
}

}  // namespace Morquil::Command
