// Connects what the gateway remembers, and whom it knows, with its store and its streams.
#pragma once

#include <boost/asio/io_context.hpp>
#include <string>

#include "gateway/config/config.h"
#include "gateway/people/people.h"
#include "gateway/salvos/salvos.h"
#include "gateway/store/store.h"
#include "gateway/store/worker.h"
#include "gateway/stream/hub.h"

namespace Morquil::Gateway {

/// A folder for the database: the given one, or one that is removed at the end if none is given.
class DataFolder {
public:
    explicit DataFolder(std::string folder);
    ~DataFolder();
    DataFolder(const DataFolder&) = delete;
    DataFolder& operator=(const DataFolder&) = delete;

    std::string Database() const { return path_ + "/gateway.db"; }

private:
    bool isTemporary_;
    std::string path_;
};

StoreSettings MakeStoreSettings(boost::asio::io_context& context, const StoreConfig& config, std::string path);
/// `hashing` hashes passwords.
PeopleSettings MakePeopleSettings(boost::asio::io_context& context, Worker& hashing, Store& store, Hub& hub,
                                  bool mayBeOpen);
SalvosSettings MakeSalvosSettings(SalvoFleet& fleet, Store& store, Hub& hub);

/// Reads users, tokens, salvos and runs.
/// Returns: why the gateway must not start; empty if it may. Without a file it may; a file that cannot be read may hold
/// users, and starting without them would let anyone in.
std::string LoadRecords(const Store& store, const std::string& path, People& people, Salvos& salvos);

}  // namespace Morquil::Gateway
