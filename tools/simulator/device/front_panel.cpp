#include "simulator/device/front_panel.h"

#include <algorithm>
#include <utility>

#include "protocol/sink.h"
#include "simulator/blocks/device_text.h"
#include "simulator/blocks/host_text_parser.h"
#include "simulator/text/escaped_text.h"
#include "simulator/text/text_lines.h"

namespace Morquil::Simulator {

namespace {

/// The parts of a command; all three refer into its text.
struct Setting {
    std::string_view header;
    std::string_view key;
    std::string_view value;
};

/// The length of `name` if `text` starts with it and a blank follows, else 0.
std::size_t LeadingName(std::string_view text, std::string_view name) {
    const bool leads = StartsIgnoringCase(text, name) && text.size() > name.size() && text[name.size()] == ' ';
    return leads ? name.size() : 0;
}

/// The same for a name followed by one or two digits, as in "AudioOut12".
std::size_t LeadingIndexedName(std::string_view text, std::string_view stem) {
    if (!StartsIgnoringCase(text, stem)) {
        return 0;
    }
    const std::size_t end = text.find_first_not_of("0123456789", stem.size());
    const bool indexed = end != std::string_view::npos && end > stem.size() && text[end] == ' ';
    return indexed ? end : 0;
}

/// The longest block name that `text` starts with; empty if there is none.
std::string_view LeadingHeader(std::string_view text) {
    std::size_t length = 0;
    ForEachBlock<BlockRole::Settings>(
        [&]<class Description>() { length = std::max(length, LeadingName(text, Description::block.header.name)); });
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
    Description::block.rows.ForEach(tryRow);
    return length;
}

/// The longest key of the block that `text` starts with; empty if there is none.
std::string_view LeadingKey(std::string_view header, std::string_view text) {
    std::size_t length = 0;
    ForEachBlock<BlockRole::Settings>([&]<class Description>() {
        if (EqualsIgnoringCase(header, Description::block.header.name)) {
            length = LeadingKeyOf<Description>(text);
        }
    });
    return text.substr(0, length);
}

/// Parses a setting as the device parses a host's block, and passes it to `TakeSettings`.
class SettingSink : public IMorquilTextProtocolSink {
public:
    /// Returns: why the setting cannot be parsed; empty if it can.
    std::string Read(const Setting& setting) {
        const std::string line = std::string(setting.key) + ": " + std::string(setting.value);
        parser_.Feed(std::string(setting.header) + ":\n" + line + "\n\n");
        if (error_.empty() && !taken_) {
            error_ = Escaped(setting.value) + " is not a value of " + Escaped(setting.key);
        }
        return std::move(error_);
    }

    void OnOtherBlock(std::size_t place, const void* changeSet) override {
        const AnyBlock block{place, changeSet};
        if (factsByPlace[place].role == BlockRole::Settings) {
            taken_ = taken_ || !HoldsNothing(block);
            if (error_.empty()) {
                error_ = TakeSettings(block);
            }
        }
    }
    void OnPing() override {}
    void OnAcknowledge(bool /*positive*/) override {}
    void OnUnknownBlock() override {}
    void OnProtocolError(const char* text) override {
        const std::string_view error = text;
        error_ = error.substr(0, error.find('\n'));
    }

private:
    /// Returns: why the setting is invalid; empty if it is valid.
    virtual std::string TakeSettings(AnyBlock block) = 0;

    HostTextParser parser_{*this};
    std::string error_;
    bool taken_ = false;
};

class ApplyingSink final : public SettingSink {
public:
    explicit ApplyingSink(DeviceState& state) : state_(state) {}

    std::string report;

private:
    std::string TakeSettings(AnyBlock block) override {
        ChangeOutcome outcome = state_.Change(block, ChangeSource::Device);
        report = std::move(outcome.report);
        return std::move(outcome.error);
    }

    DeviceState& state_;
};

class CheckingSink final : public SettingSink {
    std::string TakeSettings(AnyBlock /*block*/) override { return {}; }
};

/// A parsed command, or why it cannot be parsed.
struct SettingReading {
    Setting setting;
    std::string refusal;
};

SettingReading Refused(std::string why) {
    return {{}, std::move(why)};
}

SettingReading ReadSetting(std::string_view text) {
    if (LeadingName(text, "set") == 0) {
        return Refused("unknown command " + Escaped(text) + "; try: set VIDEO PROC AMP Gain 12");
    }
    Setting setting;
    std::string_view rest = Trimmed(text.substr(3));
    setting.header = LeadingHeader(rest);
    if (setting.header.empty()) {
        return Refused("expected the name of a block of settings, not " + Escaped(rest));
    }
    rest = Trimmed(rest.substr(setting.header.size()));
    setting.key = LeadingKey(setting.header, rest);
    if (setting.key.empty()) {
        return Refused("expected a key of " + std::string(setting.header) + " and a value, not " + Escaped(rest));
    }
    setting.value = Trimmed(rest.substr(setting.key.size()));
    return {setting, {}};
}

}  // namespace

PanelOutcome UseFrontPanel(DeviceState& state, std::string_view command) {
    SettingReading reading = ReadSetting(Trimmed(command));
    if (!reading.refusal.empty()) {
        return {std::move(reading.refusal), {}};
    }
    ApplyingSink sink(state);
    std::string refusal = sink.Read(reading.setting);
    return {std::move(refusal), std::move(sink.report)};
}

std::string PanelCommandProblem(std::string_view command) {
    SettingReading reading = ReadSetting(Trimmed(command));
    return reading.refusal.empty() ? CheckingSink().Read(reading.setting) : std::move(reading.refusal);
}

}  // namespace Morquil::Simulator
