// The names of the kinds of value.
#pragma once

#include <string_view>
#include <type_traits>

#include "description/names.h"
#include "protocol/table/key_rows.h"
#include "protocol/table/value_kinds.h"

namespace Morquil::Description {

/// Stands for the vocabulary of a kind that has none.
struct NoVocabulary {};

template <class Kind>
struct KindFacts;

template <class Vocabulary>
struct VocabularyOf {
    using Type = Vocabulary;
};

// clang-format off
template <> struct KindFacts<Signed>           : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "signed"; };
template <> struct KindFacts<Unsigned>         : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "unsigned"; };
template <> struct KindFacts<UnsignedAsSigned> : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "unsigned, written signed"; };
template <> struct KindFacts<Decimal>          : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "decimal"; };
template <> struct KindFacts<YesNo>            : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "yes/no"; };
template <> struct KindFacts<OneShot>          : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "command"; };
template <> struct KindFacts<Phase>            : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "phase"; };
template <> struct KindFacts<HexVersion>       : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "hexadecimal"; };
template <> struct KindFacts<VersionPair>      : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "version"; };
template <> struct KindFacts<Text>             : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "text"; };
template <> struct KindFacts<NonEmptyText>     : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "text"; };
template <> struct KindFacts<Timecode>         : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "timecode"; };
template <> struct KindFacts<SignedRange>      : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "signed range"; };
template <> struct KindFacts<UnsignedRange>    : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "unsigned range"; };
template <> struct KindFacts<DecimalRange>     : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "decimal range"; };
template <> struct KindFacts<HeightSelector>   : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "frame height"; };
template <> struct KindFacts<ModeSelector>     : VocabularyOf<VideoModes>   { static constexpr std::string_view name = "word"; };
template <std::size_t count>  struct KindFacts<TruthList<count>>     : VocabularyOf<NoVocabulary> { static constexpr std::string_view name = "yes/no list"; };
template <class Words>        struct KindFacts<WordOf<Words>>        : VocabularyOf<Words>        { static constexpr std::string_view name = "word"; };
template <class Words>        struct KindFacts<WordList<Words>>      : VocabularyOf<Words>        { static constexpr std::string_view name = "word list"; };
// clang-format on

template <class Kind>
inline constexpr bool isSelector = std::is_same_v<Kind, ModeSelector> || std::is_same_v<Kind, HeightSelector>;

template <class Vocabulary>
constexpr std::string_view VocabularyName() {
    if constexpr (std::is_same_v<Vocabulary, NoVocabulary>) {
        return {};
    } else {
        return TypeName<Vocabulary>();
    }
}

}  // namespace Morquil::Description
