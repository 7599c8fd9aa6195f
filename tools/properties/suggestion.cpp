#include "properties/suggestion.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "properties/lower_case.h"

namespace Morquil::Properties {
namespace {

// Fewer letters begin too much.
constexpr std::size_t fewestLetters = 3;

std::size_t SharedBeginning(std::string_view left, std::string_view right) {
    std::size_t length = 0;
    while (length < std::min(left.size(), right.size()) && Lower(left[length]) == Lower(right[length])) {
        ++length;
    }
    return length;
}

}  // namespace

std::size_t EditDistance(std::string_view left, std::string_view right) {
    // Holds one row of the distance table: row[n] is the distance between the part of `left` read so far and n letters
    // of `right`.
    std::vector<std::size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (const char letter : left) {
        std::size_t diagonal = row[0]++;
        for (std::size_t at = 0; at < right.size(); ++at) {
            const std::size_t replaced = diagonal + (Lower(letter) == Lower(right[at]) ? 0 : 1);
            diagonal = row[at + 1];
            row[at + 1] = std::min({replaced, diagonal + 1, row[at] + 1});
        }
    }
    return row.back();
}

std::string_view Nearest(std::string_view text, std::span<const std::string_view> candidates) {
    using Rank = std::pair<std::size_t, std::size_t>;  // edits, and letters at the beginning that are missing
    std::string_view nearest;
    Rank best;
    for (const std::string_view candidate : candidates) {
        const std::size_t shared = SharedBeginning(text, candidate);
        const bool isBeginning = shared == text.size() && shared >= fewestLetters;
        const std::size_t edits = isBeginning ? 0 : EditDistance(text, candidate);
        const Rank rank{edits, isBeginning ? candidate.size() : text.size() - shared};
        const bool resembles = 2 * edits <= std::max(text.size(), candidate.size());
        if (resembles && (nearest.empty() || rank < best)) {
            nearest = candidate;
            best = rank;
        }
    }
    return nearest;
}

std::vector<std::size_t> NearestFirst(std::string_view text, std::span<const std::string_view> candidates,
                                      std::size_t most) {
    using Rank = std::pair<std::size_t, std::size_t>;  // edits, and letters at the beginning that are missing
    std::vector<std::pair<Rank, std::size_t>> ranked;
    for (const std::string_view candidate : candidates) {
        const Rank rank{EditDistance(text, candidate), text.size() - SharedBeginning(text, candidate)};
        ranked.emplace_back(rank, ranked.size());
    }
    std::sort(ranked.begin(), ranked.end());
    std::vector<std::size_t> nearest;
    for (const auto& [rank, at] : ranked) {
        nearest.push_back(at);
    }
    nearest.resize(std::min(nearest.size(), most));
    return nearest;
}

}  // namespace Morquil::Properties
