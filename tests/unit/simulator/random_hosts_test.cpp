// Hosts that send random blocks. The random numbers are the same in every run.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>

#include "protocol/words/vocabularies.h"
#include "simulator/text/text_lines.h"
#include "tests/unit/simulator/lone_host.h"

namespace Morquil::Simulator {
namespace {

/// Makes blocks of settings, most of which a device can read.
class RandomBlocks {
public:
    RandomBlocks() : values_{"true", "false", "0", "1", "-1", "2147483647", "0.5", "nan", "x", "", "01:02:03:04"} {
        for (std::size_t mode = 0; mode < VideoModes::words.Size(); ++mode) {
            values_.emplace_back(VideoModes::words[mode]);
        }
        std::string block;
        ForEachLine(LoneHost().device.CompleteDump(), [&](std::string_view line) {
            const std::size_t colon = line.find(": ");
            if (line.empty()) {
                block.clear();
            } else if (block.empty()) {
                block = line;
            } else if (block != "SUPPORTED CONVERSIONS:") {
                Learn(block, line.substr(0, colon), line.substr(std::min(colon, line.size() - 2) + 2));
            }
        });
        for (const char* const line : {"ResetValues", "Reset", "Save", "Recall", "Still frame action", "Video mode"}) {
            keys_.emplace_back("", line);
        }
    }

    std::string Next() {
        const std::string& known = Any(keys_).first;
        const std::string header = known.empty() ? "VIDEO OUTPUT:" : known;
        std::string block = header + "\n";
        for (std::size_t lines = numbers_() % 4; lines > 0; --lines) {
            block += KeyFor(header) + ": " + Any(values_) + "\n";
        }
        return block + "\n";
    }

    std::size_t Below(std::size_t limit) { return numbers_() % limit; }

private:
    void Learn(const std::string& block, std::string_view key, std::string_view words) {
        keys_.emplace_back(block, key);
        values_.emplace_back(words);
        for (; !words.empty(); words = words.substr(std::min(words.find(' '), words.size() - 1) + 1)) {
            values_.emplace_back(words.substr(0, words.find(' ')));
        }
        std::sort(values_.begin(), values_.end());
        values_.erase(std::unique(values_.begin(), values_.end()), values_.end());
    }
    /// Mostly one of the block's own.
    std::string KeyFor(const std::string& header) {
        for (int attempts = 0; attempts < 200; ++attempts) {
            const auto& [block, key] = Any(keys_);
            if (block == header || block.empty()) {
                return key;
            }
        }
        return Any(keys_).second;
    }
    template <class T>
    const T& Any(const std::vector<T>& all) {
        return all[numbers_() % all.size()];
    }

    std::mt19937 numbers_{20250101};
    std::vector<std::pair<std::string, std::string>> keys_;  // block and key
    std::vector<std::string> values_;
};

TEST(RandomHosts, NeverBringADeviceIntoAStateThatItDoesNotOffer) {
    RandomBlocks blocks;
    LoneHost host;
    int taken = 0;
    for (int round = 0; round < 300; ++round) {
        const std::string block = blocks.Next();
        const std::string before = host.device.CompleteDump();
        const std::string answer = host.Ask(block);
        const std::string after = host.device.CompleteDump();
        taken += answer.starts_with("ACK") ? 1 : 0;
        if (answer.starts_with("NACK")) {
            ASSERT_EQ(before, after) << block;
        }
        LoneHost same;
        ASSERT_EQ(same.device.LoadSettings(after), "") << block << answer;
        ASSERT_EQ(same.device.CompleteDump(), after) << block << answer;
    }
    EXPECT_GT(taken, 50);
    EXPECT_LT(taken, 280);
}

TEST(RandomHosts, AreAnsweredAlikeHoweverTheirBytesAreSplit) {
    RandomBlocks blocks;
    LoneHost whole;
    LoneHost split;
    for (int round = 0; round < 1500; ++round) {
        std::string stream = blocks.Next() + blocks.Next();
        for (std::size_t spoiled = blocks.Below(3); spoiled > 0; --spoiled) {
            stream[blocks.Below(stream.size())] = "\n\r\0: x\xff"[blocks.Below(7)];
        }
        std::string answer;
        for (std::string_view rest = stream; !rest.empty();) {
            const std::size_t length = std::min(rest.size(), 1 + blocks.Below(20));
            answer += split.Ask(rest.substr(0, length));
            rest.remove_prefix(length);
        }
        ASSERT_EQ(whole.Ask(stream), answer) << stream;
    }
    EXPECT_EQ(whole.device.CompleteDump(), split.device.CompleteDump());
}

}  // namespace
}  // namespace Morquil::Simulator
