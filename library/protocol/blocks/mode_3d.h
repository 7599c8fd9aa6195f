#pragma once

#include <array>

#include "protocol/table/block.h"
#include "protocol/table/message.h"

namespace Morquil {

/// The ranges of 3D processing, and the output modes that each input mode allows.
struct Mode3DAvailabilityChangeSet {
    Field<Range<std::int32_t>> intensityRange2D3D;
    Field<Range<std::int32_t>> depthRange2D3D;
    Field<Range<std::int32_t>> rollRange;
    Field<Range<std::int32_t>> tiltRange;
    Field<Range<std::int32_t>> toeInRange;
    std::array<SetField<VideoModes>, VideoModes::words.Size()> output;

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "MODE3D AVAILABILITY", .unknownKeyText = "Unknown supported mode 3D avail line \"%s\"\n"},
        Key{"2D3D intensity range", &Mode3DAvailabilityChangeSet::intensityRange2D3D, SignedRange{}},
        Key{"2D3D depth range",     &Mode3DAvailabilityChangeSet::depthRange2D3D,     SignedRange{}},
        Key{"3D roll range",        &Mode3DAvailabilityChangeSet::rollRange,          SignedRange{}},
        Key{"3D tilt range",        &Mode3DAvailabilityChangeSet::tiltRange,          SignedRange{}},
        Key{"3D toeIn range",       &Mode3DAvailabilityChangeSet::toeInRange,         SignedRange{}},
        Group{ModeSelector{"Input", &Selections::inputMode, UnknownMode::ForgetsSelection, "Received invalid Mode 3D Avail input mode string \"%s\"\n", false},
              GroupKey{"Output", &Mode3DAvailabilityChangeSet::output, WordList<VideoModes>{}}}};
    // clang-format on
};

/// 3D processing.
struct Mode3DChangeSet {
    using Offers = Mode3DAvailabilityChangeSet;

    WordField<Modes3D> mode3D;
    Field<std::int32_t> intensity2D3D;
    Field<std::int32_t> depth2D3D;
    Field<std::int32_t> rollLeft;
    Field<std::int32_t> rollRight;
    Field<std::int32_t> tiltLeft;
    Field<std::int32_t> tiltRight;
    Field<std::int32_t> toeInLeft;
    Field<std::int32_t> toeInRight;
    WordField<Flips3D> flipLeft;
    WordField<Flips3D> flipRight;
    WordField<Types3D> output3D;
    WordField<Types3D> input3D;

    /// Numbers are read before their key is checked, and reported under this name.
    static constexpr Signed number{"Mode 3D"};
    static bool ReadsNumber(const LineContext& line) {
        std::int32_t value = 0;
        return ParseValue(line, number.reportName, value);
    }

    // clang-format off
    static constexpr Block block{
        BlockHeader{.name = "MODE3D", .unknownKeyText = "Unknown Mode 3D line \"%s\"\n", .readsValueFirst = &ReadsNumber},
        Key{"3D mode",        &Mode3DChangeSet::mode3D,        WordOf<Modes3D>{"Failed to parse %s string \"%s\"\n"}},
        Key{"2D3D intensity", &Mode3DChangeSet::intensity2D3D, number}.LimitedBy(&Offers::intensityRange2D3D),
        Key{"2D3D depth",     &Mode3DChangeSet::depth2D3D,     number}.LimitedBy(&Offers::depthRange2D3D),
        Key{"3D roll left",   &Mode3DChangeSet::rollLeft,      number}.LimitedBy(&Offers::rollRange),
        Key{"3D roll right",  &Mode3DChangeSet::rollRight,     number}.LimitedBy(&Offers::rollRange),
        Key{"3D tilt left",   &Mode3DChangeSet::tiltLeft,      number}.LimitedBy(&Offers::tiltRange),
        Key{"3D tilt right",  &Mode3DChangeSet::tiltRight,     number}.LimitedBy(&Offers::tiltRange),
        Key{"3D toeIn left",  &Mode3DChangeSet::toeInLeft,     number}.LimitedBy(&Offers::toeInRange),
        Key{"3D toeIn right", &Mode3DChangeSet::toeInRight,    number}.LimitedBy(&Offers::toeInRange),
        Key{"3D flip left",   &Mode3DChangeSet::flipLeft,      WordOf<Flips3D>{"Failed to parse %s string \"%s\"\n"}},
        Key{"3D flip right",  &Mode3DChangeSet::flipRight,     WordOf<Flips3D>{"Failed to parse %s string \"%s\"\n"}},
        // The output comes before the input: devices expect this order.
        Key{"3D output",      &Mode3DChangeSet::output3D,      WordOf<Types3D>{"Failed to parse %s string \"%s\"\n"}},
        Key{"3D input",       &Mode3DChangeSet::input3D,       WordOf<Types3D>{"Failed to parse %s string \"%s\"\n"}}};
    // clang-format on
};

using Mode3DMessage = TextProtocolMessage<Mode3DChangeSet>;
using Mode3DAvailabilityMessage = TextProtocolMessage<Mode3DAvailabilityChangeSet>;

}  // namespace Morquil
