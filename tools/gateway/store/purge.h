// Keeps the database below its caps, a little at a time. Only sources of this folder include this.
#pragma once

#include <cstddef>

#include "gateway/store/database.h"
#include "gateway/store/store.h"

namespace Morquil::Gateway {

class Purge {
public:
    explicit Purge(Caps caps) : caps_(caps) {}

    /// Deletes a slice of what is too much: first by age, then by size, changes before attempts. The size of a slice is
    /// chosen so that one takes about 10 ms.
    /// Throws: SQLite::Exception.
    /// Returns: whether there may be more to do.
    bool Step(SQLite::Database& database, Time now);

    /// The rows of the next slice.
    std::size_t Rows() const { return rows_; }

private:
    bool DeleteSlice(SQLite::Database& database, Time now) const;
    void Adapt(std::chrono::steady_clock::duration took);

    Caps caps_;
    std::size_t rows_ = 100;
};

}  // namespace Morquil::Gateway
