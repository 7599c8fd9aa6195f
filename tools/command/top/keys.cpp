#include "command/top/keys.h"

#include <algorithm>
#include <iterator>

namespace Morquil::Command {
namespace {

struct Sequence {
    std::string_view bytes;
    Key key;
};

constexpr Sequence sequences[] = {{"q", Key::Quit},    {"Q", Key::Quit},     {"k", Key::Up},
                                  {"j", Key::Down},    {"\x1b[A", Key::Up},  {"\x1b[B", Key::Down},
                                  {"\x1bOA", Key::Up}, {"\x1bOB", Key::Down}};

}  // namespace

std::vector<Key> KeysOf(std::string_view bytes) {
    std::vector<Key> keys;
    while (!bytes.empty()) {
        const auto known = std::find_if(std::begin(sequences), std::end(sequences), [bytes](const Sequence& sequence) {
            return bytes.starts_with(sequence.bytes);
        });
        if (known != std::end(sequences)) {
            keys.push_back(known->key);
        }
        bytes.remove_prefix(known != std::end(sequences) ? known->bytes.size() : 1);
    }
    return keys;
}

}  // namespace Morquil::Command
