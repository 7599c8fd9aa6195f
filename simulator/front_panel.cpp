#include "simulator/front_panel.h"

#include <utility>

#include "protocol/morquil_text_protocol_parser.h"
#include "simulator/block_kinds.h"
#include "simulator/every_block_sink.h"
#include "simulator/host_lines.h"
#include "simulator/text_lines.h"

namespace Morquil::Simulator {

namespace {

/// A command taken apart; all three refer into it.
struct Setting {
    std::string_view header;
    std::string_view key;
    std::string_view value;
};

std::string Quoted(std::string_view text) {
    return "\"" + std::string(text) + "\"";
}

/// The length of `name` when `text` starts with it and a blank follows, else 0.
std::size_t LeadingName(std::string_view text, std::string_view name) {
    const bool leads = StartsIgnoringCase(text, name) && text.size() > name.size() && text[name.size()] == ' ';
    return leads ? name.size() : 0;
}

/// The same for a name that one or two digits follow, as in "AudioOut12".
std::size_t LeadingIndexedName(std::string_view text, std::string_view stem) {
    if (!StartsIgnoringCase(text, stem)) {
        return 0;
    }
    const std::size_t end = text.find_first_not_of("0123456789", stem.size());
    const bool indexed = end != std::string_view::npos && end > stem.size() && text[end] == ' ';
    return indexed ? end : 0;
}

/// The longest block name that `text` starts with; empty when there is none.
std::string_view LeadingHeader(std::string_view text) {
    std::size_t length = 0;
    ForEachBlock<BlockKind::Settings>([&](auto entry) {
        using Description = typename decltype(entry)::Description;
        length = std::max(length, LeadingName(text, Description::block.header.name));
    });
    return text.substr(0, length);
}

template <class Description>
std::size_t LeadingKeyOf(std::string_view text) {
    std::size_t length = 0;
    const auto tryKey = [&](const KeyName& key) {
        length =
            std::max(length, key.indexCount == 0 ? LeadingName(text, key.text) : LeadingIndexedName(text, key.text));
    };
    const auto tryRow = [&](const auto& row) {
        for (const KeyName& key : row.Names()) {
            tryKey(key);
        }
    };
    std::apply([&](const auto&... row) { (tryRow(row), ...); }, Description::block.rows);
    return length;
}

/// The longest key of the block that `text` starts with; empty when there is none.
std::string_view LeadingKey(std::string_view header, std::string_view text) {
    std::size_t length = 0;
    ForEachBlock<BlockKind::Settings>([&](auto entry) {
        using Description = typename decltype(entry)::Description;
        if (EqualsIgnoringCase(header, Description::block.header.name)) {
            length = LeadingKeyOf<Description>(text);
        }
    });
    return text.substr(0, length);
}

/// Applies what it reads to the state.
class PanelSink final : public EveryBlockSink<PanelSink> {
public:
    explicit PanelSink(DeviceState& state) : state_(state) { parser_.SetSink(this); }

    PanelOutcome Apply(const Setting& setting) {
        const std::string line = std::string(setting.key) + ": " + std::string(setting.value);
        HostLines(parser_).Feed(std::string(setting.header) + ":\n" + line + "\n\n");
        if (outcome_.refusal.empty() && outcome_.report.empty()) {
            outcome_.refusal = Quoted(setting.value) + " is no value of " + Quoted(setting.key);
        }
        return std::move(outcome_);
    }

    template <class Description>
    void OnBlock(const ChangeSetOf<Description>& set) {
        if constexpr (KindOf<Description>() == BlockKind::Settings) {
            if (outcome_.refusal.empty()) {
                outcome_.report = state_.Apply<Description>(set);
            }
        }
    }
    void OnPing() override {}
    void OnAcknowledge(bool /*positive*/) override {}
    void OnUnknownBlock() override {}
    void OnProtocolError(const char* text) override {
        std::string_view complaint = text;
        complaint = complaint.substr(0, complaint.find('\n'));
        outcome_.refusal = complaint;
    }

private:
    DeviceState& state_;
    MorquilTextProtocolParser parser_;
    PanelOutcome outcome_;
};

PanelOutcome Refused(std::string why) {
    return {std::move(why), {}};
}

}  // namespace

PanelOutcome UseFrontPanel(DeviceState& state, std::string_view command) {
    const std::string_view text = Trimmed(command);
    if (LeadingName(text, "set") == 0) {
        return Refused("unknown command " + Quoted(text) + "; try: set VIDEO PROC AMP Gain 12");
    }
    Setting setting;
    std::string_view rest = Trimmed(text.substr(3));
    setting.header = LeadingHeader(rest);
    if (setting.header.empty()) {
        return Refused("no block of settings is named at the start of " + Quoted(rest));
    }
    rest = Trimmed(rest.substr(setting.header.size()));
    setting.key = LeadingKey(setting.header, rest);
    if (setting.key.empty()) {
        return Refused("no key of " + std::string(setting.header) + ", with a value behind it, in " + Quoted(rest));
    }
    setting.value = Trimmed(rest.substr(setting.key.size()));
    return PanelSink(state).Apply(setting);
}

}  // namespace Morquil::Simulator
