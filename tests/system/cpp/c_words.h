/* The words of enumerations as a host in C reads them. */
#ifndef MORQUIL_TESTS_C_WORDS_H
#define MORQUIL_TESTS_C_WORDS_H

#ifdef __cplusplus
extern "C" {
#endif

/* The enumerations that the functions know, by number; null above the last one. */
const char* CNameOfEnumeration(int number);

/* The word for a value, or null. */
const char* CTextOf(int enumeration, int value);

/* The number that `text` stands for, or -1. */
int CValueOf(int enumeration, const char* text);

/* How many words an enumeration has. */
int CCountWords(int enumeration);

#ifdef __cplusplus
}
#endif

#endif
