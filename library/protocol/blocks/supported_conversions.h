#pragma once

#include <array>
#include <bitset>
#include <cstddef>

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// One flag for every input mode, output mode and aspect ratio. Received as soon as any flag is set.
class ConversionTable {
public:
    static constexpr std::size_t modes = VideoModes::words.Size();
    static constexpr std::size_t ratios = AspectRatios::words.Size();

    bool IsPresent() const { return flags_.any(); }
    /// False for every index outside the table.
    bool Has(std::size_t input, std::size_t output, std::size_t ratio) const {
        return input < modes && output < modes && ratio < ratios && flags_[Position(input, output, ratio)];
    }
    void Add(std::size_t input, std::size_t output, std::size_t ratio) { flags_.set(Position(input, output, ratio)); }
    bool DiffersFrom(const ConversionTable& other) const { return flags_ != other.flags_; }

private:
    static constexpr std::size_t Position(std::size_t input, std::size_t output, std::size_t ratio) {
        return (input * modes + output) * ratios + ratio;
    }

    std::bitset<modes * modes * ratios> flags_;
};

/// Groups of an "Input" line, "Output" lines and "Aspect ratio" lines, each for the modes selected before it.
template <class Owner>
struct ConversionRows {
    ModeSelector input;
    ModeSelector output;
    const char* ratioName;
    ConversionTable Owner::*member;

    template <Side side = Side::Host>
    constexpr std::array<KeyName, 3> Names() const {
        return {KeyName{input.name}, KeyName{output.name}, KeyName{ratioName}};
    }

    template <std::size_t which, Side side = Side::Host>
    void Read(const LineContext& line, Owner& set, std::size_t /*index*/) const {
        if constexpr (which == 0) {
            input.Select(line);
        } else if constexpr (which == 1) {
            output.Select(line);
        } else {
            ReadRatios(line, set.*member);
        }
    }

    template <Side side = Side::Host>
    void Write(IMessageSender& sender, const Owner& set) const {
        for (std::size_t mode = 0; mode < ConversionTable::modes; ++mode) {
            WriteInput(sender, set.*member, mode);
        }
    }

    template <class Visit>
    constexpr void ForEachMember(Visit&& visit) const {
        visit(member);
    }
    template <class Visit>
    constexpr void ForEachKey(Visit&& /*visit*/) const {}

private:
    void ReadRatios(const LineContext& line, ConversionTable& table) const {
        const std::size_t from = input.Selected(line.selections);
        const std::size_t to = output.Selected(line.selections);
        if (from == Selections::noMode || to == Selections::noMode) {
            return;
        }
        ValueReader reader(line.value);
        for (std::string_view word; reader.ReadWord(word);) {
            const std::size_t ratio = AspectRatios::words.Find(word);
            if (ratio < AspectRatios::words.Size()) {
                table.Add(from, to, ratio);
            }
        }
    }

    /// One "Input" line precedes all the outputs of an input that has any.
    void WriteInput(IMessageSender& sender, const ConversionTable& table, std::size_t from) const {
        bool inputWritten = false;
        for (std::size_t to = 0; to < ConversionTable::modes; ++to) {
            bool outputWritten = false;
            for (std::size_t ratio = 0; ratio < ConversionTable::ratios; ++ratio) {
                if (table.Has(from, to, ratio)) {
                    WriteHeads(sender, from, to, inputWritten, outputWritten);
                    sender.SendFormatted(" %s", AspectRatios::words[ratio].data());
                }
            }
            if (outputWritten) {
                sender.SendFormatted("\n");
            }
        }
    }

    void WriteHeads(IMessageSender& sender, std::size_t from, std::size_t to, bool& inputWritten,
                    bool& outputWritten) const {
        if (!inputWritten) {
            input.WriteSelection(sender, from);
            inputWritten = true;
        }
        if (!outputWritten) {
            output.WriteSelection(sender, to);
            sender.SendFormatted("%s:", ratioName);
            outputWritten = true;
        }
    }
};

/// Which conversions the device supports.
struct SupportedConversionsChangeSet {
    ConversionTable aspectRatio;

    static constexpr const char* invalidMode = "Received invalid Supported Conversions %s mode string \"%s\"\n";

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "SUPPORTED CONVERSIONS", .unknownKeyText = "Unknown supported conversions line \"%s\"\n"},
        ConversionRows<SupportedConversionsChangeSet>{
            .input  = {"Input",  &Selections::inputMode,  UnknownMode::ForgetsSelection, invalidMode, true},
            .output = {"Output", &Selections::outputMode, UnknownMode::ForgetsSelection, invalidMode, true},
            .ratioName = "Aspect ratio",
            .member = &SupportedConversionsChangeSet::aspectRatio}};
    // clang-format on
};

using SupportedConversionsMessage = TextProtocolMessage<SupportedConversionsChangeSet>;

}  // namespace Morquil
