#include "command/commands/settings_text.h"

#include <algorithm>
#include <array>
#include <type_traits>
#include <utility>

#include "protocol/any_block.h"
#include "protocol/blocks/all.h"
#include "protocol/morquil_text_protocol_parser.h"
#include "protocol/sink.h"
#include "protocol/text/ascii.h"
#include "protocol/text/split_line.h"

namespace Morquil::Command {
namespace {

/// The lines that the library's parser finds in a file, whether their blocks and keys are known or not.
class LineCollector final : public TextProtocolParser {
public:
    std::vector<SettingsLine> lines;
    std::vector<std::string> blocks;
    bool isInBlock = false;

private:
    bool BeginBlock(std::string_view header) override {
        block_ = header;
        blocks.push_back(block_);
        isInBlock = true;
        return true;
    }
    void ParseLine(std::string_view line) override {
        if (line.find(':') != std::string_view::npos) {
            const KeyAndValue parts = SplitLine(line);
            lines.push_back({block_, std::string(parts.key), std::string(parts.value)});
        }
    }
    void EndBlock() override { isInBlock = false; }
    void ReportError(const char* /*text*/) override {}
    void OnPingLine() override {}
    void OnAcknowledgeLine(bool /*positive*/) override {}

    std::string block_;
};

/// A line as the library understands it, in its own text: lines with the same value have the same text.
class LineReader final : private IMorquilTextProtocolSink {
public:
    LineReader() { parser_.SetSink(this); }

    const std::string& Read(const SettingsLine& line) {
        text_.clear();
        const std::string block = line.block + ":\n" + line.key + ": " + line.value + "\n\n";
        parser_.Feed(block.data(), block.size());
        return text_;
    }

private:
    void OnOtherBlock(std::size_t place, const void* changeSet) override {
        const AnyBlock block{place, changeSet};
        if (!IsEmpty(block)) {
            text_ = BlockText(block);
        }
    }
    void OnPing() override {}
    void OnAcknowledge(bool /*positive*/) override {}
    void OnUnknownBlock() override {}
    void OnProtocolError(const char* /*text*/) override {}

    MorquilTextProtocolParser parser_;
    std::string text_;
};

bool IsSameValue(const SettingsLine& left, const SettingsLine& right) {
    LineReader reader;
    const std::string read = reader.Read(left);
    return left.value == right.value || (!read.empty() && read == reader.Read(right));
}

/// Whether a line's key is the row's key, followed by a number if the key is indexed.
bool IsNamed(const KeyName& name, std::string_view key) {
    if (name.indexCount == 0) {
        return EqualsIgnoringCase(name.text, key);
    }
    const std::size_t stem = std::min(name.text.size(), key.size());
    return EqualsIgnoringCase(name.text, key.substr(0, stem)) && key.size() > stem &&
           key.find_first_not_of("0123456789", stem) == std::string_view::npos;
}

/// Whether a value that a host sends under this key appears in a settings file afterwards.
template <class KeyRow>
bool IsSeen(const KeyRow& key) {
    using Kind = std::remove_cvref_t<decltype(key.kind)>;
    return key.facts.use == KeyUse::Setting && key.facts.isSaved && !std::is_same_v<Kind, Phase>;
}

/// Whether a line with this key counts as applied only if it is seen. A still frame action never is: no device saves
/// one, so a file that asks for it was written by hand, and its author must know that nothing confirms it.
template <class KeyRow>
bool MustBeSeen(const KeyRow& key) {
    using Kind = std::remove_cvref_t<decltype(key.kind)>;
    return IsSeen(key) || std::is_same_v<Kind, WordOf<StillFrameActions>>;
}

template <class Description>
Playback PlaybackOfKey(std::string_view line) {
    Playback playback = Playback::Applied;
    const auto tryRow = [&](const auto& row) {
        row.ForEachKey([&](const auto& key) {
            const bool isReported = row.Names().size() != 0;
            if (IsNamed(key.Names()[0], line) && !(isReported && MustBeSeen(key))) {
                playback = key.facts.use == KeyUse::Observed ? Playback::Ignored : Playback::Unseen;
            }
        });
    };
    Description::block.rows.ForEach(tryRow);
    return playback;
}

bool IsKeyOf(const SettingsLine& line, const SettingsLine& other) {
    return EqualsIgnoringCase(line.block, other.block) && EqualsIgnoringCase(line.key, other.key);
}

/// In the order of the file.
std::array<std::string_view, savedBlockCount> SavedBlockNames() {
    std::array<std::string_view, savedBlockCount> names;
    ForEachBlock([&]<class Description>() {
        if constexpr (factsOf<Description>.savedPlace != 0) {
            names[factsOf<Description>.savedPlace - 1] = Description::block.header.name;
        }
    });
    return names;
}

}  // namespace

std::vector<SettingsLine> ParseSettings(std::string_view text) {
    LineCollector collector;
    collector.Feed(text.data(), text.size());
    collector.Feed("\n", 1);  // the last line may lack its line feed
    return std::move(collector.lines);
}

FileShape ShapeOf(std::string_view text) {
    LineCollector collector;
    collector.Feed(text.data(), text.size());
    FileShape shape;
    if (collector.isInBlock) {
        shape.cutBlock = collector.blocks.back();
    }
    for (const std::string_view name : SavedBlockNames()) {
        const auto isNamed = [name](const std::string& block) { return EqualsIgnoringCase(block, name); };
        if (std::none_of(collector.blocks.begin(), collector.blocks.end(), isNamed)) {
            shape.missing.emplace_back(name);
        }
    }
    return shape;
}

std::string FileShape::Damage() const {
    std::string text = cutBlock ? "it ends within " + *cutBlock : "";
    for (const std::string& block : missing) {
        text += (&block != &missing.front() ? ", " : text.empty() ? "it lacks " : ", and lacks ") + block;
    }
    return text;
}

Playback PlaybackOf(const SettingsLine& line) {
    Playback playback = Playback::NeverPlayed;
    ForEachBlock([&]<class Description>() {
        constexpr BlockFacts facts = factsOf<Description>;
        if (facts.isPlayedBack && facts.isSent && EqualsIgnoringCase(line.block, Description::block.header.name)) {
            playback = PlaybackOfKey<Description>(line.key);
        }
    });
    return playback;
}

std::string PlayableText(const std::vector<SettingsLine>& lines) {
    std::string text;
    std::string block;
    for (const SettingsLine& line : lines) {
        const Playback playback = PlaybackOf(line);
        if (playback == Playback::Ignored || playback == Playback::NeverPlayed) {
            continue;
        }
        if (line.block != block) {
            text += (text.empty() ? "" : "\n") + line.block + ":\n";
            block = line.block;
        }
        text += line.key + ": " + line.value + "\n";
    }
    return text + "\n";
}

const SettingsLine* FindLine(const std::vector<SettingsLine>& lines, const SettingsLine& line) {
    const auto found =
        std::find_if(lines.rbegin(), lines.rend(), [&line](const SettingsLine& other) { return IsKeyOf(line, other); });
    return found != lines.rend() ? &*found : nullptr;
}

std::vector<SettingsLine> MissingLines(const std::vector<SettingsLine>& wanted,
                                       const std::vector<SettingsLine>& saved) {
    std::vector<SettingsLine> missing;
    for (const SettingsLine& line : wanted) {
        const bool counts = PlaybackOf(line) == Playback::Applied && FindLine(wanted, line) == &line;
        const SettingsLine* const shown = counts ? FindLine(saved, line) : nullptr;
        if (counts && (shown == nullptr || !IsSameValue(line, *shown))) {
            missing.push_back(line);
        }
    }
    return missing;
}

}  // namespace Morquil::Command
