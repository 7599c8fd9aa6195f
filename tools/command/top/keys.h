#pragma once

#include <string_view>
#include <vector>

namespace Morquil::Command {

enum class Key { Quit, Up, Down };

/// The keys that a terminal has sent; those without a meaning are left out.
std::vector<Key> KeysOf(std::string_view bytes);

}  // namespace Morquil::Command
