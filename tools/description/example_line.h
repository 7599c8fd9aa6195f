// Example lines: sample values, written by the rows themselves.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "description/key_walk.h"
#include "protocol/text/message_to_string.h"

namespace Morquil::Description {

/// A sample value for each kind, to show how it looks in a line.
template <class Kind, class FieldType>
void PutSample(const Kind& /*kind*/, FieldType& field) {
    field.Set({});
}
template <class Kind>
void PutSample(const Kind& /*kind*/, Field<std::int32_t>& field) {
    field.Set(std::is_same_v<Kind, Signed> ? 12 : 0);
}
template <class Kind>
void PutSample(const Kind& /*kind*/, Field<std::uint32_t>& field) {
    field.Set(std::is_same_v<Kind, Timecode> ? 0x10000000 : std::is_same_v<Kind, HexVersion> ? 0x1a : 16);
}
template <class Kind>
void PutSample(const Kind& /*kind*/, Field<double>& field) {
    field.Set(1.5);
}
template <class Kind>
void PutSample(const Kind& /*kind*/, Field<bool>& field) {
    field.Set(true);
}
template <class Kind>
void PutSample(const Kind& /*kind*/, Field<Range<std::int32_t>>& field) {
    field.Set({-60, 60});
}
template <class Kind>
void PutSample(const Kind& /*kind*/, Field<Range<std::uint32_t>>& field) {
    field.Set({16, 235});
}
template <class Kind>
void PutSample(const Kind& /*kind*/, Field<Range<double>>& field) {
    field.Set({0.5, 2.0});
}
template <class Kind>
void PutSample(const Kind& /*kind*/, Field<ProtocolVersion>& field) {
    field.Set({2, 22});
}
template <class Kind, std::size_t capacity, Compare comparison>
void PutSample(const Kind& /*kind*/, TextField<capacity, comparison>& field) {
    field.Set("Studio 1");
}
template <class Kind, class Vocabulary>
void PutSample(const Kind& /*kind*/, SetField<Vocabulary>& field) {
    field.Add(0);
    field.Add(1);
}
template <class Kind>
void PutSample(const Kind& /*kind*/, ConversionTable& table) {
    table.Add(morquilAPIVideoMode1080i50, morquilAPIVideoMode720p50, morquilAPIAspectRatioAnamorphic);
}
template <class Kind, class FieldType, std::size_t count>
void PutSample(const Kind& kind, std::array<FieldType, count>& fields) {
    PutSample(kind, fields.front());
}

/// What a row writes for sample values.
template <class Set, class Row>
std::string SampleLines(const Row& row) {
    Set set;
    VisitKeys(row, [&](const KeyPlace& /*place*/, const auto& kind, auto member) {
        if constexpr (!std::is_null_pointer_v<decltype(member)>) {
            PutSample(kind, set.*member);
        }
    });
    MessageToString text;
    row.Write(text, set);
    return std::string(text.GetText());
}

/// The line of one key; empty if the row does not write one.
template <class Set, class Row>
std::string ExampleLine(const Row& row, const KeyPlace& place) {
    const std::string lines = "\n" + SampleLines<Set>(row);
    const std::string start = "\n" + std::string(place.key) + (place.count != 0 ? "0:" : ":");
    const std::size_t at = lines.find(start);
    return at == std::string::npos ? std::string() : lines.substr(at + 1, lines.find('\n', at + 1) - at - 1);
}

}  // namespace Morquil::Description
