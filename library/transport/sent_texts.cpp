#include "transport/sent_texts.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace Morquil {

void SentTexts::Append(std::string text) {
    texts_.push_back(std::move(text));
    if (texts_.size() > limit) {
        texts_.pop_front();
    }
}

bool SentTexts::Contains(std::string_view text) const {
    return std::find(texts_.begin(), texts_.end(), text) != texts_.end();
}

void SentTexts::DropThrough(std::string_view text) {
    const auto found = std::find(texts_.begin(), texts_.end(), text);
    if (found != texts_.end()) {
        texts_.erase(texts_.begin(), std::next(found));
    }
}

}  // namespace Morquil
