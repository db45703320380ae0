#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "editor/document/document.h"
#include "editor/document/document_search.h"

// What counts as a word, an indent and a pair of brackets. None of these changes the text.

bool isEditWordCharacter(wchar_t character);  // a letter or digit of the locale, or '_'
bool isEditBlank(wchar_t character);          // as the locale says

enum class WordRight {
  Brief,     // to the end of the next word
  NextStart  // to the start of the next word
};
// May end in another line.
TextPlace wordRightPlace(const Document& document, TextPlace from, WordRight kind);
TextPlace wordLeftPlace(const Document& document, TextPlace from);
// One character, across line ends; the text's ends stay.
TextPlace placeLeft(const Document& document, TextPlace from);
TextPlace placeRight(const Document& document, TextPlace from);
// Where a deletion of the word to the left begins: in the line of `from`, which isn't its start.
TextPlace deleteWordStart(const Document& document, TextPlace from);

struct TextRange {
  TextPlace from;
  TextPlace to;
};
// The word at the place, or the one that ends there.
std::optional<TextRange> wordAt(const Document& document, TextPlace place);

// The partner of the bracket at `place`; none when there is no bracket or no partner, or when it
// was stopped.
std::optional<TextPlace> matchingBracket(const Document& document, TextPlace place,
                                         const StopAsked& stop = {});

// The blanks that lead a new line after a split at `place`: those of the nearest line upwards that
// holds more than blanks, the line of `place` itself only with what stands left of it. None when
// there is no such line.
std::optional<std::wstring> leadingIndent(const Document& document, TextPlace place,
                                          const StopAsked& stop = {});

// A replacement to be made.
struct TextChange {
  TextPlace from;
  TextPlace to;
  TextSpan text;
};
inline constexpr int64_t LongestEditedLine = 65535;  // what typing and pasting may make
// The lines from `first` to before `behind` with their indents changed by `delta` columns; none
// when no line changes. Blank lines, lines that would begin before column 0 and lines that would
// become too long stay.
std::optional<TextChange> indentChange(const Document& document, int64_t first, int64_t behind,
                                       int64_t delta, int tabWidth, const StopAsked& stop = {});
int indentStep(int indentWidth);  // what IndentWidth means: 1 to 100

// Whether replacing the text between the places by `text` keeps the first line in the limit of what
// may be typed or pasted.
bool fitsLine(const Document& document, TextPlace from, TextPlace to, const TextSpan& text);
