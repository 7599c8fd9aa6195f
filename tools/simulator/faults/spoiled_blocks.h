#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Morquil::Simulator {

/// Makes the device refuse every block of a host: appends a line to it that no device knows. Pings are not blocks and
/// do not change. The text is the same however the stream is split.
class SpoiledBlocks {
public:
    /// Passes the stream on. With `spoil`, spoils the blocks that end in these bytes.
    std::string Pass(std::string_view bytes, bool spoil);

private:
    void EndLine(std::string& passed, bool spoil);

    bool insideBlock_ = false;
    std::size_t lineLength_ = 0;  // without carriage returns
    std::string lineStart_;       // enough of it to recognize a ping
};

}  // namespace Morquil::Simulator
