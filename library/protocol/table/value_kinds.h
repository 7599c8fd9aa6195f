#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "protocol/table/field.h"
#include "protocol/table/line_context.h"
#include "protocol/text/message_sender.h"
#include "protocol/text/timecode.h"

/// The kinds of value that a key can carry. A kind reads *and* writes, so that the two cannot drift apart:
/// `Read(line, key, field)` puts the line's value into the field, or reports it and leaves the field unchanged;
/// `Write(sender, key, field)` writes the whole line of a field that is present;
/// `ReadAtDevice` and `WriteAtDevice` are the device's versions, where they differ from the host's.
namespace Morquil {

inline void WriteLine(IMessageSender& sender, const char* key, std::int32_t value) {
    sender.SendFormatted("%s: %d\n", key, value);
}
inline void WriteLine(IMessageSender& sender, const char* key, std::uint32_t value) {
    sender.SendFormatted("%s: %u\n", key, value);
}
inline void WriteLine(IMessageSender& sender, const char* key, double value) {
    sender.SendFormatted("%s: %f\n", key, value);
}
inline void WriteLine(IMessageSender& sender, const char* key, bool value) {
    sender.SendFormatted("%s: %s\n", key, value ? "true" : "false");
}
inline void WriteLine(IMessageSender& sender, const char* key, const Range<std::int32_t>& range) {
    sender.SendFormatted("%s: %d %d\n", key, range.minimum, range.maximum);
}
inline void WriteLine(IMessageSender& sender, const char* key, const Range<std::uint32_t>& range) {
    sender.SendFormatted("%s: %u %u\n", key, range.minimum, range.maximum);
}
inline void WriteLine(IMessageSender& sender, const char* key, const Range<double>& range) {
    sender.SendFormatted("%s: %f %f\n", key, range.minimum, range.maximum);
}

/// A number or a truth value.
template <class T>
struct Single {
    /// The name under which a bad value is reported, if it is not the key.
    const char* reportName = nullptr;

    template <class FieldType>
    void Read(const LineContext& line, ReportedKey key, FieldType& field) const {
        T value{};
        if (ParseValue(line, reportName != nullptr ? ReportedKey(reportName) : key, value)) {
            field.Set(value);
        }
    }
    /// A device refuses the number that marks a field as absent.
    template <class FieldType>
    void ReadAtDevice(const LineContext& line, ReportedKey key, FieldType& field) const {
        FieldType read;
        T value{};
        if (!ParseValue(line, reportName != nullptr ? ReportedKey(reportName) : key, value)) {
            return;
        }
        read.Set(value);
        if (read.IsPresent()) {
            field = read;
        } else {
            ReportValue(line, unreadableValue, key);
        }
    }
    template <class FieldType>
    void Write(IMessageSender& sender, const char* key, const FieldType& field) const {
        WriteLine(sender, key, field.Get());
    }
};
using Signed = Single<std::int32_t>;
using Unsigned = Single<std::uint32_t>;
using Decimal = Single<double>;
using YesNo = Single<bool>;

/// Two limits, minimum then maximum.
template <class T>
struct Limits {
    /// The name under which a bad range is reported, if it is not the key.
    const char* reportName = nullptr;

    void Read(const LineContext& line, ReportedKey key, Field<Range<T>>& field) const {
        Range<T> range;
        if (ParseRange(line, reportName != nullptr ? ReportedKey(reportName) : key, range)) {
            field.Set(range);
        }
    }
    void Write(IMessageSender& sender, const char* key, const Field<Range<T>>& field) const {
        WriteLine(sender, key, field.Get());
    }
};
using SignedRange = Limits<std::int32_t>;
using UnsignedRange = Limits<std::uint32_t>;
using DecimalRange = Limits<double>;

/// An unsigned number that devices expect in signed notation: 4294967295 is written as -1 and read back from it.
struct UnsignedAsSigned {
    void Read(const LineContext& line, ReportedKey key, Field<std::uint32_t>& field) const {
        Unsigned{}.Read(line, key, field);
    }
    void Write(IMessageSender& sender, const char* key, const Field<std::uint32_t>& field) const {
        WriteLine(sender, key, static_cast<std::int32_t>(field.Get()));
    }
};

/// A version number in hexadecimal. A malformed one reads as a known 0; 0 is never written.
struct HexVersion {
    void Read(const LineContext& line, ReportedKey /*key*/, Field<std::uint32_t>& field) const {
        field.Set(ParseHexVersion(line.value));
    }
    void Write(IMessageSender& sender, const char* key, const Field<std::uint32_t>& field) const {
        if (field.Get() != 0) {
            sender.SendFormatted("%s: 0x%x\n", key, field.Get());
        }
    }
};

/// A command that is given by its presence: "false" is no command and is never written.
struct OneShot {
    void Read(const LineContext& line, ReportedKey key, Field<bool>& field) const {
        bool value = false;
        if (ParseValue(line, key, value) && value) {
            field.Set(true);
        }
    }
    void Write(IMessageSender& sender, const char* key, const Field<bool>& /*field*/) const {
        WriteLine(sender, key, true);
    }
};

/// An audio phase: hosts write a word, devices report a number. A device accepts both; a host does not read the form
/// that it writes.
struct Phase {
    void Read(const LineContext& line, ReportedKey key, Field<bool>& field) const {
        std::int32_t value = 0;
        if (ParseValue(line, key, value)) {
            field.Set(value != 0);
        }
    }
    void ReadAtDevice(const LineContext& line, ReportedKey key, Field<bool>& field) const {
        if (line.value == "true" || line.value == "false") {
            field.Set(line.value == "true");
        } else {
            Read(line, key, field);
        }
    }
    void Write(IMessageSender& sender, const char* key, const Field<bool>& field) const {
        WriteLine(sender, key, field.Get());
    }
    void WriteAtDevice(IMessageSender& sender, const char* key, const Field<bool>& field) const {
        WriteLine(sender, key, std::int32_t{field.Get()});
    }
};

/// One word of a vocabulary.
template <class Vocabulary>
struct WordOf {
    /// Reported with key and word when the word is unknown; without it an unknown word is silently ignored.
    const char* failureText = nullptr;

    template <class FieldType>
    void Read(const LineContext& line, ReportedKey key, FieldType& field) const {
        const std::size_t index = Vocabulary::words.Find(line.value);
        if (index < Vocabulary::words.Size()) {
            field.Set(static_cast<std::int32_t>(index));
        } else if (failureText != nullptr) {
            ReportValue(line, failureText, key);
        }
    }
    /// A value outside the vocabulary has no word: it writes no line.
    template <class FieldType>
    void Write(IMessageSender& sender, const char* key, const FieldType& field) const {
        const auto index = static_cast<std::size_t>(static_cast<std::uint32_t>(field.Get()));
        if (index < Vocabulary::words.Size()) {
            sender.SendFormatted("%s: %s\n", key, Vocabulary::words[index].data());
        }
    }
};

/// The longest line that the other side reads whole, without its line feed.
inline constexpr std::size_t longestLine = 255;

/// Words separated by white space; unknown ones are silently dropped. Reading only ever adds words.
template <class Vocabulary>
struct WordList {
    void Read(const LineContext& line, ReportedKey /*key*/, SetField<Vocabulary>& field) const {
        field.MarkReceived();
        ValueReader reader(line.value);
        for (std::string_view word; reader.ReadWord(word);) {
            const std::size_t index = Vocabulary::words.Find(word);
            if (index < Vocabulary::words.Size()) {
                field.Add(index);
            }
        }
    }
    void Write(IMessageSender& sender, const char* key, const SetField<Vocabulary>& field) const {
        sender.SendFormatted("%s:", key);
        for (std::size_t index = 0; index < Vocabulary::words.Size(); ++index) {
            if (field.Has(index)) {
                sender.SendFormatted(" %s", Vocabulary::words[index].data());
            }
        }
        sender.SendFormatted("\n");
    }
    /// A list that does not fit into one line continues in another with the same key: reading adds the words of all of
    /// them.
    void WriteAtDevice(IMessageSender& sender, const char* key, const SetField<Vocabulary>& field) const {
        sender.SendFormatted("%s:", key);
        const std::size_t start = std::string_view(key).size() + 1;
        std::size_t length = start;
        for (std::size_t index = 0; index < Vocabulary::words.Size(); ++index) {
            if (!field.Has(index)) {
                continue;
            }
            const std::size_t added = 1 + Vocabulary::words[index].size();
            if (length + added > longestLine) {
                sender.SendFormatted("\n%s:", key);
                length = start;
            }
            sender.SendFormatted(" %s", Vocabulary::words[index].data());
            length += added;
        }
        sender.SendFormatted("\n");
    }
};

/// One truth value per position, in order. Extra words are dropped; a word that is not a truth value leaves its
/// position unchanged.
template <std::size_t count>
struct TruthList {
    using FieldType = Field<std::array<bool, count>>;

    /// Reads up to the first word that is not a truth value; a line without any leaves the field unchanged.
    void Read(const LineContext& line, ReportedKey key, FieldType& field) const {
        std::array<bool, count> values = field.Get();
        std::size_t read = 0;
        ValueReader reader(line.value);
        for (std::string_view word; read < count && reader.ReadWord(word); ++read) {
            if (!ParseValue({line.errors, line.selections, word}, key, values[read])) {
                break;
            }
        }
        if (read > 0) {
            field.Set(values);
        }
    }
    void Write(IMessageSender& sender, const char* key, const FieldType& field) const {
        sender.SendFormatted("%s:", key);
        for (const bool value : field.Get()) {
            sender.SendFormatted(" %s", value ? "true" : "false");
        }
        sender.SendFormatted("\n");
    }
};

/// The maximum number of bytes that are kept of a received text.
inline constexpr std::size_t receivedTextLimit = 49;

/// Free text.
struct Text {
    template <class FieldType>
    void Read(const LineContext& line, ReportedKey /*key*/, FieldType& field) const {
        field.Set(line.value, receivedTextLimit);
    }
    template <class FieldType>
    void Write(IMessageSender& sender, const char* key, const FieldType& field) const {
        sender.SendFormatted("%s: %s\n", key, field.CString());
    }
};

/// Free text that is written only when it is not empty.
struct NonEmptyText : Text {
    template <class FieldType>
    void Write(IMessageSender& sender, const char* key, const FieldType& field) const {
        if (!field.Get().empty()) {
            Text::Write(sender, key, field);
        }
    }
};

/// A timecode, held as eight BCD digits, hours first. Anything else is silently ignored.
/// Always written with the drop-frame separator before the frames, whatever the drop-frame mode.
struct Timecode {
    void Read(const LineContext& line, ReportedKey /*key*/, Field<std::uint32_t>& field) const {
        std::uint32_t digits = 0;
        if (ParseTimecode(line.value, digits)) {
            field.Set(digits);
        }
    }
    /// A device reports anything else.
    void ReadAtDevice(const LineContext& line, ReportedKey key, Field<std::uint32_t>& field) const {
        std::uint32_t digits = 0;
        if (ParseTimecode(line.value, digits)) {
            field.Set(digits);
        } else {
            ReportValue(line, unreadableValue, key);
        }
    }
    void Write(IMessageSender& sender, const char* key, const Field<std::uint32_t>& field) const {
        sender.SendFormatted("%s: %s\n", key, TimecodeText(field.Get()).data());
    }
};

/// The two numbers of a protocol version.
struct ProtocolVersion {
    std::uint32_t flags = 0;
    std::uint32_t minor = 0;
    bool operator==(const ProtocolVersion&) const = default;
};

/// A protocol version, "flags.minor".
struct VersionPair {
    const char* failureText;

    void Read(const LineContext& line, ReportedKey key, Field<ProtocolVersion>& field) const {
        ProtocolVersion version;
        if (ParseVersionPair(line.value, version.flags, version.minor)) {
            field.Set(version);
        } else {
            ReportValue(line, failureText, key);
        }
    }
    void Write(IMessageSender& sender, const char* key, const Field<ProtocolVersion>& field) const {
        sender.SendFormatted("%s: %d.%d\n", key, static_cast<std::int32_t>(field.Get().flags),
                             static_cast<std::int32_t>(field.Get().minor));
    }
};

}  // namespace Morquil
