// Hashes as columns.
#pragma once

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>

#include <algorithm>

#include "gateway/store/audit_chain.h"

namespace Morquil::Gateway {

/// All zero if the column has another size.
inline Hash HashIn(const SQLite::Column& column) {
    Hash hash{};
    if (column.getBytes() == int(hash.size())) {
        std::copy_n(static_cast<const unsigned char*>(column.getBlob()), hash.size(), hash.begin());
    }
    return hash;
}

inline void BindHash(SQLite::Statement& statement, int at, const Hash& hash) {
    statement.bind(at, hash.data(), int(hash.size()));
}

}  // namespace Morquil::Gateway
