#include "bench/naive_parser.h"

#include <sstream>

namespace Morquil::Bench {

namespace {

void ParseLine(const std::string& line, PlainBlocks& blocks) {
    std::istringstream stream(line);
    std::string key;
    std::string value;
    std::getline(stream >> std::ws, key, ':');
    std::getline(stream >> std::ws, value);
    blocks.Read(key.c_str(), value.c_str());
}

}  // namespace

void NaiveParse(const std::string& text, PlainBlocks& blocks) {
    std::istringstream stream(text);
    bool inside = false;
    bool known = false;
    for (std::string line; std::getline(stream, line);) {
        if (line.empty()) {
            blocks.End();
            inside = false;
        } else if (!inside) {
            known = blocks.Begin(line.substr(0, line.find(':')).c_str());
            inside = true;
        } else if (known) {
            ParseLine(line, blocks);
        }
    }
}

}  // namespace Morquil::Bench
