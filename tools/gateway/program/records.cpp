#include "gateway/program/records.h"

#include <boost/asio/post.hpp>
#include <cstdlib>
#include <filesystem>

#include "gateway/text/log.h"

namespace Morquil::Gateway {
namespace {

std::string MakeTemporaryFolder() {
    std::string path = (std::filesystem::temp_directory_path() / "morquil-gateway-XXXXXX").string();
    return mkdtemp(path.data()) != nullptr ? path : std::string();
}

/// Without the steps, which not everybody may see; they are asked for.
Json RunEvent(const Run& run) {
    Json json = ToJson(run);
    json.erase("steps");
    json.erase("idempotencyKey");
    return {{"run", json}};
}

void WarnOf(const std::vector<std::string>& unreadable) {
    for (const std::string& name : unreadable) {
        Log(LogLevel::Warning, "unreadable document", {{"name", name}});
    }
}

// An empty file is one whose tables could not be made.
bool HoldsSomething(const std::string& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    return !error && size > 0;
}

}  // namespace

DataFolder::DataFolder(std::string folder)
    : isTemporary_(folder.empty()), path_(isTemporary_ ? MakeTemporaryFolder() : std::move(folder)) {}

DataFolder::~DataFolder() {
    if (isTemporary_ && !path_.empty()) {
        std::error_code error;
        std::filesystem::remove_all(path_, error);
    }
}

StoreSettings MakeStoreSettings(boost::asio::io_context& context, const StoreConfig& config, std::string path) {
    StoreSettings settings;
    settings.path = std::move(path);
    settings.post = [&context](std::function<void()> function) { boost::asio::post(context, std::move(function)); };
    settings.caps.historyAge = std::chrono::hours(24) * config.historyDays;
    settings.caps.bytes = std::int64_t{config.historyMegabytes} << 20;
    return settings;
}

PeopleSettings MakePeopleSettings(boost::asio::io_context& context, Worker& hashing, Store& store, Hub& hub,
                                  bool mayBeOpen) {
    PeopleSettings settings;
    settings.background = [&context, &hashing](std::function<void()> work, std::function<void()> done) {
        return hashing.Run([&context, work = std::move(work), done = std::move(done)] {
            work();
            boost::asio::post(context, done);
        });
    };
    settings.put = [&store](std::string_view collection, const std::string& name, const std::string& text) {
        store.Put(std::string(collection), name, text);
    };
    settings.erase = [&store](std::string_view collection, const std::string& name) {
        store.Erase(std::string(collection), name);
    };
    settings.ended = [&hub](const std::string& credential) { hub.End(credential, "signed out"); };
    settings.mayBeOpen = mayBeOpen;
    return settings;
}

SalvosSettings MakeSalvosSettings(SalvoFleet& fleet, Store& store, Hub& hub) {
    SalvosSettings settings;
    settings.fleet = &fleet;
    settings.put = [&store](std::string_view collection, const std::string& name, const std::string& text,
                            std::function<void()> written) {
        store.Put(std::string(collection), name, text);
        store.Flush([written = std::move(written)](bool) { written(); });
    };
    settings.erase = [&store](std::string_view collection, const std::string& name) {
        store.Erase(std::string(collection), name);
    };
    settings.changed = [&hub](const Run& run) { hub.Publish("run", RunEvent(run)); };
    settings.newId = RandomName;
    return settings;
}

std::string LoadRecords(const Store& store, const std::string& path, People& people, Salvos& salvos) {
    const auto users = store.Load(std::string(usersCollection));
    const auto tokens = store.Load(std::string(tokensCollection));
    const auto stored = store.Load(std::string(salvosCollection));
    const auto runs = store.Load(std::string(runsCollection));
    const StoreCondition condition = store.Condition();
    if (condition.state != StoreState::Writing) {
        Log(LogLevel::Error, "the database is not written", {{"reason", condition.sentence}});
    }
    if (!users || !tokens || !stored || !runs) {
        return HoldsSomething(path) ? condition.sentence : std::string();
    }
    WarnOf(people.Load(*users, *tokens));
    WarnOf(salvos.Load(*stored, *runs));
    return {};
}

}  // namespace Morquil::Gateway
