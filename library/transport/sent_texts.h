#pragma once

#include <list>
#include <string>
#include <string_view>

namespace Morquil {

/// The texts of blocks that were sent and whose echo has not come back yet, oldest first.
class SentTexts {
public:
    bool IsEmpty() const { return texts_.empty(); }
    void Append(std::string text);
    bool Contains(std::string_view text) const;
    /// Removes everything from the oldest up to the first `text`: the device answers in order, so what was sent before
    /// an answered block will not be answered any more. Unknown text removes nothing.
    void ForgetThrough(std::string_view text);

private:
    std::list<std::string> texts_;
};

}  // namespace Morquil
