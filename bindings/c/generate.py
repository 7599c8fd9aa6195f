#!/usr/bin/env python3
"""Makes MorquilWords.h: the words of the enumerations, for hosts in C.

    generate.py MorquilWords.h MorquilAPI.idl VOCABULARY.h...

The words come from the tables that the library itself reads and writes them with.
"""

import pathlib
import sys

sys.dont_write_bytecode = True  # the sources may be read-only
sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent))

from generator.definitions import (  # noqa: E402
    enumeration_name,
    read_constants,
    read_enumerations,
    read_words,
    without_comments,
)

HEADER = r"""/** \file
 * The words that devices and people use for the values of enumerations. C and C++; nothing has to be linked for it.
 *
 *     printf("%s\n", MorquilVideoModeText(mode));                  "1080i50"
 *     if (MorquilVideoModeFromText("1080p50", &mode)) { ... }
 *
 * Generated from the library's own tables.
 */
#ifndef MORQUIL_WORDS_H
#define MORQUIL_WORDS_H

#include <stddef.h>

#include "MorquilAPI.h"

/* The strictest options of C++ compilers want casts of its own. */
#ifdef __cplusplus
#define MORQUIL_CAST(type, value) static_cast<type>(value)
#else
#define MORQUIL_CAST(type, value) ((type)(value))
#endif

/** A word and the number of the value that it stands for. A list of words ends with one whose text is null. */
typedef struct MorquilWord {
    const char* text;
    int value;
} MorquilWord;

/** The word for a value; null if it has none. */
static inline const char* MorquilTextInWords(const MorquilWord* words, int value) {
    while (words->text != NULL && words->value != value) {
        ++words;
    }
    return words->text;
}

/** Whether two texts differ at most in the case of ASCII letters. */
static inline int MorquilIsSameButForCase(const char* one, const char* other) {
    size_t at = 0;
    int same = 1;
    while (same && one[at] != '\0') {
        const char a = one[at];
        const char b = other[at];
        same = (a >= 'A' && a <= 'Z' ? a - 'A' + 'a' : a) == (b >= 'A' && b <= 'Z' ? b - 'A' + 'a' : b);
        ++at;
    }
    return same && other[at] == '\0';
}

/** The word that `text` is, in any case; null if it is none of them. */
static inline const MorquilWord* MorquilFindInWords(const MorquilWord* words, const char* text) {
    while (words->text != NULL && !MorquilIsSameButForCase(words->text, text)) {
        ++words;
    }
    return words->text != NULL ? words : NULL;
}

/*
 * For each enumeration:
 *   ...Words       all of its words
 *   ...Text        the word for a value; null for a value that has none
 *   ...FromText    1, and the value, if `text` is one of the words; otherwise 0, and the value is as before
 */
"""


def functions(name, words):
    own = enumeration_name(name)
    rows = "".join(f'        {{"{word}", {constant}}},\n' for word, constant in words)
    return f"""
static inline const MorquilWord* Morquil{own}Words(void) {{
    static const MorquilWord words[] = {{
{rows}        {{NULL, 0}}}};
    return words;
}}
static inline const char* Morquil{own}Text({name} value) {{
    return MorquilTextInWords(Morquil{own}Words(), MORQUIL_CAST(int, value));
}}
static inline int Morquil{own}FromText(const char* text, {name}* value) {{
    const MorquilWord* const word = MorquilFindInWords(Morquil{own}Words(), text);
    if (word != NULL) {{
        *value = MORQUIL_CAST({name}, word->value);
    }}
    return word != NULL;
}}
"""


def main():
    target, idl, *vocabularies = map(pathlib.Path, sys.argv[1:])
    text = without_comments(idl.read_text(encoding="utf-8"))
    words = read_words(path.read_text(encoding="utf-8") for path in vocabularies)
    constants = read_constants(text)
    missing = [constant for rows in words.values() for _, constant in rows
               if constant not in constants and not constant.isdigit()]
    if missing:
        sys.exit(f"no such constants: {', '.join(missing)}")
    parts = [functions(name, words[name]) for name in read_enumerations(text) if name in words]
    target.write_text(HEADER + "".join(parts) + "\n#undef MORQUIL_CAST\n\n#endif /* MORQUIL_WORDS_H */\n", encoding="utf-8")


if __name__ == "__main__":
    main()
