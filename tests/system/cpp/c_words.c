#include "tests/system/cpp/c_words.h"

#include "MorquilWords.h"

struct Enumeration {
    const char* name;
    const MorquilWord* (*words)(void);
    const char* (*text)(int value);
    int (*number)(const char* text);
};

/* Through the typed functions, which hosts call. */
#define DEFINE(name)                                                    \
    static const char* name##Text(int value) {                          \
        return Morquil##name##Text((_MorquilAPI##name)value);           \
    }                                                                   \
    static int name##Number(const char* text) {                         \
        _MorquilAPI##name value = (_MorquilAPI##name)0;                 \
        return Morquil##name##FromText(text, &value) ? (int)value : -1; \
    }
#define ROW(name) \
    { #name, Morquil##name##Words, name##Text, name##Number }

DEFINE(VideoMode)
DEFINE(AspectRatio)
DEFINE(AFDInsertType)
DEFINE(AudioSelect)

static const struct Enumeration enumerations[] = {ROW(VideoMode), ROW(AspectRatio), ROW(AFDInsertType),
                                                  ROW(AudioSelect)};

const char* CNameOfEnumeration(int number) {
    return number < (int)(sizeof enumerations / sizeof enumerations[0]) ? enumerations[number].name : NULL;
}

const char* CTextOf(int enumeration, int value) {
    return enumerations[enumeration].text(value);
}

int CValueOf(int enumeration, const char* text) {
    return enumerations[enumeration].number(text);
}

int CCountWords(int enumeration) {
    const MorquilWord* const words = enumerations[enumeration].words();
    int count = 0;
    while (words[count].text != NULL) {
        ++count;
    }
    return count;
}
