#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "MorquilAPI.h"
#include "tests/simulation/wire.h"

namespace Morquil::Simulation {

/// A key that the mad device speaks: what it may say of it, and how a host reads and sets the same.
struct SpokenKey {
    std::string header;
    std::string key;
    /// The interface that the calls below take.
    const IID* iid = nullptr;
    /// All that is ever said of it, as it stands on the wire.
    std::vector<std::string> values = {};
    /// What the getter answers, as it would stand on the wire; nothing when it does not know.
    std::function<std::optional<std::string>(IUnknown& face)> read = nullptr;
    /// Sets one of `values`, by its place. Empty where hosts cannot.
    std::function<HRESULT(IUnknown& face, std::size_t value)> set = nullptr;
    /// A line that has to stand before it: the key is one of many of its name.
    Lines selector = {};

    /// Its lines with one of `values`, by its place.
    Lines LinesOf(std::size_t value) const;
    /// What tells it from all others of its block.
    std::string Name() const;
};

/// All of them; those of a block stand together, in the order of the wire.
const std::vector<SpokenKey>& SpokenKeys();

/// The name of a key behind a selecting line.
std::string NameBehind(const std::string& selected, const std::string& key);
/// Whether a line with this key selects what those behind it are about.
bool IsSelector(const std::string& header, const std::string& key);
/// Decimals without the zeros at their ends, but for one; other text as it is.
std::string WithoutEndingZeros(const std::string& value);

}  // namespace Morquil::Simulation
