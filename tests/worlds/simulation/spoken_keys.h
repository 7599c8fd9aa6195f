#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "MorquilAPI.h"
#include "tests/worlds/simulation/wire.h"

namespace Morquil::Testing::Worlds {

/// A key that the erratic device sends: its possible values, and how a host reads and sets them.
struct SpokenKey {
    std::string header;
    std::string key;
    /// The interface that the calls below use.
    const IID* iid = nullptr;
    /// All values that are ever sent, as on the wire.
    std::vector<std::string> values = {};
    /// What the getter answers, as it would be on the wire; nothing if it does not know.
    std::function<std::optional<std::string>(IUnknown& face)> read = nullptr;
    /// Sets one of `values`, by its index. Empty if hosts cannot set it.
    std::function<HRESULT(IUnknown& face, std::size_t value)> set = nullptr;
    /// A line that has to precede it: the key is one of many with its name.
    Lines selector = {};

    /// Its lines with one of `values`, by its index.
    Lines LinesOf(std::size_t value) const;
    /// What distinguishes it from all others of its block.
    std::string Name() const;
};

/// All of them; those of a block are adjacent, in wire order.
const std::vector<SpokenKey>& SpokenKeys();

/// The name of a key after a selecting line.
std::string NameAfter(const std::string& selected, const std::string& key);
/// Whether a line with this key selects what the following lines are about.
bool IsSelector(const std::string& header, const std::string& key);
/// Decimals without their trailing zeros, except one; other text unchanged.
std::string WithoutEndingZeros(const std::string& value);

}  // namespace Morquil::Testing::Worlds
