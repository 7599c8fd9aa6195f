#include "simulator/device/settings_load.h"

#include <utility>

#include "protocol/sink.h"
#include "protocol/text/split_line.h"
#include "simulator/blocks/host_text_parser.h"
#include "simulator/text/text_lines.h"

namespace Morquil::Simulator {

namespace {

template <class Row>
bool IsWriteOnly(const Row& /*row*/, std::string_view /*key*/) {
    return false;
}
template <class Row>
bool IsWriteOnly(const WriteOnly<Row>& row, std::string_view key) {
    return EqualsIgnoringCase(row.row.name, key);
}

/// Whether devices accept this key but never report it. A saved file does not hold such a line.
bool IsNeverReported(std::string_view header, std::string_view key) {
    bool isNeverReported = false;
    ForEachBlock<BlockRole::Settings>([&]<class Description>() {
        if (EqualsIgnoringCase(header, Description::block.header.name)) {
            Description::block.rows.ForEach([&](const auto& row) { isNeverReported |= IsWriteOnly(row, key); });
        }
    });
    return isNeverReported;
}

/// Collects blocks of settings, and the first problem in them.
class SettingsReader final : public IMorquilTextProtocolSink {
public:
    void Read(std::string_view text) {
        ForEachLine(text, [&](std::string_view line) {
            Locate(line.substr(0, line.find_last_not_of('\r') + 1));
            if (!IsNeverReported(block_, SplitLine(line).key)) {
                parser_.Feed(line);
                parser_.Feed("\n");
            }
        });
        parser_.Feed("\n");  // the last block may lack its empty line
    }

    void OnOtherBlock(std::size_t place, const void* changeSet) override {
        if (factsByPlace[place].role == BlockRole::Settings) {
            settings.Merge({place, changeSet});
        }
    }
    void OnPing() override {}
    void OnAcknowledge(bool /*positive*/) override {}
    void OnUnknownBlock() override {}
    void OnProtocolError(const char* text) override {
        if (error.empty()) {
            const std::string_view reason = text;
            error = place_ + ": " + std::string(reason.substr(0, reason.find('\n')));
        }
    }

    DeviceBlocks settings;
    std::string error;

private:
    /// Describes the reader's position in words.
    void Locate(std::string_view line) {
        if (line.empty()) {
            block_.clear();
            place_.clear();
        } else if (block_.empty()) {
            block_ = line.ends_with(':') ? line.substr(0, line.size() - 1) : line;
            place_ = block_;
        } else {
            place_ = block_ + ", " + std::string(Trimmed(line));
        }
    }

    HostTextParser parser_{*this};
    std::string block_;
    std::string place_;
};

}  // namespace

ChangeOutcome LoadSettings(DeviceState& device, std::string_view text) {
    SettingsReader reader;
    reader.Read(text);
    if (!reader.error.empty()) {
        return {std::move(reader.error), {}};
    }
    return device.Load(reader.settings);
}

}  // namespace Morquil::Simulator
