#pragma once

#include <cstdint>

#include "foundation/fold_table.h"

// Case folding by a fixed table of simple upper-case mappings, the same in every locale. Values at
// or above U+8000, and negative ones, fold to themselves.
inline wchar_t foldChar(wchar_t character) {
  auto index = static_cast<uint32_t>(character);
  return index < FoldLimit ? foldTable.entry[index] : character;
}
// The way back: the small letter of a capital, by the same table; any other character itself.
wchar_t unfoldChar(wchar_t character);
void foldString(wchar_t* text);   // in place
void lowerString(wchar_t* text);  // in place, each character by lowerChar
// ASCII letters as lowerAscii says, all others by the locale.
wchar_t lowerChar(wchar_t character);

// The words of the program itself (hot keys, keys and headers of its files, names that it knows)
// fold by ASCII alone: in a Turkish locale the small letter of 'I' is another one than 'i'.
template <class Character>
constexpr Character lowerAscii(Character character) {
  return character >= 'A' && character <= 'Z' ? static_cast<Character>(character - 'A' + 'a')
                                              : character;
}
template <class Character>
constexpr Character upperAscii(Character character) {
  return character >= 'a' && character <= 'z' ? static_cast<Character>(character - 'a' + 'A')
                                              : character;
}
// Below, at or above 0 as `a` sorts before, with or behind `b`.
int compareWords(const char* a, const char* b);
bool sameWord(const char* a, const char* b);
bool sameWord(const wchar_t* a, const wchar_t* b);
bool beginsWithWord(const char* text, const char* word);

// Difference of the first folded characters that differ; a shorter string compares as ending in 0.
int compareNoCase(const wchar_t* a, const wchar_t* b);
// Over at most `count` characters; the final difference looks at the low 8 bits only, so it may
// call unequal characters equal: for quick search, never for identity.
int compareNoCaseN(const wchar_t* a, const wchar_t* b, int count);

// The order of file names: low bytes of folded characters, '_' before every printable character,
// and a plain wide compare at the last, so that it is a total order.
int compareNames(const wchar_t* a, const wchar_t* b);
// The first eight places of that order as one number: names whose prefixes differ compare as the
// numbers do, equal prefixes say nothing. Kept beside each name it makes a large sort fast.
uint64_t compareNamesPrefix(const wchar_t* name);
