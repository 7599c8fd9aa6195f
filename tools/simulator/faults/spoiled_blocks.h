#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Morquil::Simulator {

/// Makes every block of a host one that its device has to refuse: puts a line that no device knows at its end. Pings,
/// which are no blocks, stay as they are. Any split of the stream gives the same text.
class SpoiledBlocks {
public:
    /// Follows the stream; spoils the blocks that end here if they are to be spoiled.
    std::string Pass(std::string_view bytes, bool spoil);

private:
    void EndLine(std::string& passed, bool spoil);

    bool insideBlock_ = false;
    std::size_t lineLength_ = 0;  // without carriage returns
    std::string lineStart_;       // as much of it as tells a ping
};

}  // namespace Morquil::Simulator
