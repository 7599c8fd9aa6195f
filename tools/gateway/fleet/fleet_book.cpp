#include "gateway/fleet/fleet_book.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "gateway/config/entry_json.h"

namespace Morquil::Gateway {
namespace {

template <class Entries>
auto FindNamed(Entries& entries, std::string_view name) {
    return std::find_if(entries.begin(), entries.end(), [&](const DeviceEntry& entry) { return entry.name == name; });
}

bool WriteAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        content.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
    }
    return true;
}

bool SyncFolder(const std::string& path) {
    const int descriptor =
        ::open(std::filesystem::path(path).parent_path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool isSynced = descriptor >= 0 && ::fsync(descriptor) == 0;
    if (descriptor >= 0) {
        ::close(descriptor);
    }
    return isSynced;
}

}  // namespace

std::vector<DeviceEntry> FleetBook::Entries() const {
    std::vector<DeviceEntry> entries;
    for (const DeviceEntry& entry : configured_) {
        if (removed_.count(entry.name) == 0) {
            const auto edited = FindNamed(edited_, entry.name);
            entries.push_back(edited != edited_.end() ? *edited : entry);
        }
    }
    for (const DeviceEntry& entry : edited_) {
        if (FindNamed(entries, entry.name) == entries.end()) {
            entries.push_back(entry);
        }
    }
    return entries;
}

bool FleetBook::Has(std::string_view name) const {
    const bool isConfigured = FindNamed(configured_, name) != configured_.end() && removed_.count(name) == 0;
    return isConfigured || FindNamed(edited_, name) != edited_.end();
}

void FleetBook::Put(const DeviceEntry& entry) {
    const auto edited = FindNamed(edited_, entry.name);
    if (edited != edited_.end()) {
        *edited = entry;
    } else {
        edited_.push_back(entry);
    }
    removed_.erase(entry.name);
}

void FleetBook::Remove(std::string_view name) {
    std::erase_if(edited_, [&](const DeviceEntry& entry) { return entry.name == name; });
    if (FindNamed(configured_, name) != configured_.end()) {
        removed_.emplace(name);
    }
}

std::string FleetBook::Save() const {
    Json devices = Json::array();
    for (const DeviceEntry& entry : edited_) {
        devices.push_back(EntryJson(entry));
    }
    return Json{{"devices", devices}, {"removed", removed_}}.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

std::string FleetBook::Load(std::string_view content) {
    const Json json = Json::parse(content, nullptr, false);
    if (!json.is_object() || !json.contains("devices") || !json["devices"].is_array()) {
        return "it is not a list of devices";
    }
    std::vector<DeviceEntry> edited;
    for (const Json& device : json["devices"]) {
        std::string problem;
        const std::optional<DeviceEntry> entry = ReadEntry(device, {}, problem);
        if (!entry) {
            return problem;
        }
        edited.push_back(*entry);
    }
    std::set<std::string, std::less<>> removed;
    for (const Json& name : json.value("removed", Json::array())) {
        if (!name.is_string()) {
            return "removed: expected names";
        }
        removed.insert(name.get<std::string>());
    }
    edited_ = std::move(edited);
    removed_ = std::move(removed);
    return {};
}

std::string ReplaceFile(const std::string& path, std::string_view content) {
    const std::string temporary = path + ".new";
    const int descriptor = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0640);
    if (descriptor < 0) {
        return std::strerror(errno);
    }
    const bool isWritten = WriteAll(descriptor, content) && ::fsync(descriptor) == 0;
    const int error = errno;
    ::close(descriptor);
    if (!isWritten) {
        ::unlink(temporary.c_str());
        return std::strerror(error);
    }
    if (::rename(temporary.c_str(), path.c_str()) != 0 || !SyncFolder(path)) {
        return std::strerror(errno);
    }
    return {};
}

}  // namespace Morquil::Gateway
