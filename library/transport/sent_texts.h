#pragma once

#include <cstddef>
#include <list>
#include <string>
#include <string_view>

namespace Morquil {

/// The texts of sent blocks whose echo has not arrived yet, oldest first. Holds a limited number, so that a device that
/// never echoes does not make it grow: beyond that the oldest is dropped, and an echo of it counts as a change made
/// elsewhere.
class SentTexts {
public:
    static constexpr std::size_t limit = 4096;

    bool IsEmpty() const { return texts_.empty(); }
    void Append(std::string text);
    bool Contains(std::string_view text) const;
    /// Removes everything from the oldest text through the first that equals `text`. The device answers in order, so
    /// blocks sent before an answered block will not be answered any more. Does nothing if `text` is not in the list.
    void DropThrough(std::string_view text);

private:
    std::list<std::string> texts_;
};

}  // namespace Morquil
