#pragma once

#include <fstream>
#include <sstream>
#include <string>

namespace Morquil::Testing {

/// Everything that a device sends to a new host.
inline std::string DumpText() {
    std::ostringstream text;
    text << std::ifstream(MORQUIL_TEST_DATA "/full_dump.txt", std::ios::binary).rdbuf();
    return text.str();
}

}  // namespace Morquil::Testing
