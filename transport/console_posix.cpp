#include <cstdio>

#include "transport/console.h"

namespace Morquil {

void Print(std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
}

}  // namespace Morquil
