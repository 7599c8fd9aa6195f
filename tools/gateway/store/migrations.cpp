// The tables. A migration is never changed once it has been released; a new one is added at the end.
#include <array>

#include "gateway/store/database.h"

namespace Morquil::Gateway {
namespace {

constexpr std::array<const char*, 1> migrations{
    R"(
    -- Texts that history repeats: names of devices, properties, origins and people.
    CREATE TABLE names(id INTEGER PRIMARY KEY, text TEXT NOT NULL UNIQUE);

    CREATE TABLE history(
        id INTEGER PRIMARY KEY AUTOINCREMENT,  -- never used again, not even after a purge
        time INTEGER NOT NULL,                 -- milliseconds since 1970
        device INTEGER NOT NULL,
        property INTEGER NOT NULL,
        old TEXT NOT NULL,
        new TEXT NOT NULL,
        origin INTEGER NOT NULL,
        who INTEGER NOT NULL);
    CREATE INDEX history_by_time ON history(time);
    CREATE INDEX history_by_device ON history(device, time);
    CREATE INDEX history_by_property ON history(property, time);
    CREATE INDEX history_by_both ON history(device, property, time);

    CREATE TABLE audit(
        id INTEGER PRIMARY KEY,  -- without gaps
        time INTEGER NOT NULL,
        who TEXT NOT NULL,
        address TEXT NOT NULL,
        device TEXT NOT NULL,
        property TEXT NOT NULL,
        value TEXT NOT NULL,
        outcome TEXT NOT NULL,
        status INTEGER NOT NULL,
        request TEXT NOT NULL,
        hash BLOB NOT NULL);
    CREATE INDEX audit_by_time ON audit(time);
    CREATE INDEX audit_by_device ON audit(device, time);

    -- Two anchors: the last row that was purged, from which the chain of hashes goes on, and the last row of all.
    CREATE TABLE audit_anchors(place TEXT PRIMARY KEY, id INTEGER NOT NULL, hash BLOB NOT NULL) WITHOUT ROWID;
    INSERT INTO audit_anchors VALUES ('purged', 0, zeroblob(32)), ('last', 0, zeroblob(32));

    CREATE TABLE documents(
        collection TEXT NOT NULL,
        name TEXT NOT NULL,
        text TEXT NOT NULL,
        PRIMARY KEY (collection, name)) WITHOUT ROWID;
    )"};

}  // namespace

std::span<const char* const> Migrations() {
    return migrations;
}

}  // namespace Morquil::Gateway
