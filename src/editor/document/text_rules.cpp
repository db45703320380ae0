#include "editor/document/text_rules.h"

#include <algorithm>
#include <cwctype>
#include <string_view>

namespace {
// How many lines are looked at between two looks for a key.
constexpr int64_t LinesBetweenLooks = 256;

bool isStopped(int64_t line, const StopAsked& stop) {
  return line % LinesBetweenLooks == 0 && stop && stop();
}

size_t indentLength(std::wstring_view text) {
  size_t length = 0;
  while (length < text.size() && isEditBlank(text[length])) ++length;
  return length;
}

size_t skipWord(std::wstring_view text, size_t at) {
  while (at < text.size() && isEditWordCharacter(text[at])) ++at;
  return at;
}

size_t skipOthers(std::wstring_view text, size_t at) {
  while (at < text.size() && !isEditWordCharacter(text[at])) ++at;
  return at;
}
}  // namespace

bool isEditWordCharacter(wchar_t character) {
  if (character == L'_') return true;
  return character > 0 && std::iswalnum(static_cast<wint_t>(character)) != 0;
}

bool isEditBlank(wchar_t character) {
  return character > 0 && std::iswspace(static_cast<wint_t>(character)) != 0;
}

TextPlace placeLeft(const Document& document, TextPlace from) {
  if (from.index > 0) return {from.line, from.index - 1};
  return from.line > 0 ? TextPlace{from.line - 1, document.lineLength(from.line - 1)} : from;
}

TextPlace placeRight(const Document& document, TextPlace from) {
  if (from.index < document.lineLength(from.line)) return {from.line, from.index + 1};
  return from.line + 1 < document.lineCount() ? TextPlace{from.line + 1, 0} : from;
}

TextPlace wordRightPlace(const Document& document, TextPlace from, WordRight kind) {
  const std::wstring text = document.text(from.line);
  auto at = static_cast<size_t>(from.index);
  if (at >= text.size()) return placeRight(document, from);
  if (kind == WordRight::Brief) {
    at = skipWord(text, skipOthers(text, at));
    return {from.line, static_cast<int64_t>(at)};
  }
  at = skipOthers(text, skipWord(text, at + 1));
  const TextPlace place{from.line, static_cast<int64_t>(at)};
  return at == text.size() ? placeRight(document, place) : place;
}

TextPlace wordLeftPlace(const Document& document, TextPlace from) {
  if (from.index == 0) return placeLeft(document, from);
  const std::wstring text = document.slice(from.line, 0, from.index);
  size_t at = text.size();
  // A step that comes to the line's start goes on to the line above, whatever stands there.
  do {
    if (--at == 0) return placeLeft(document, {from.line, 0});
  } while (!isEditWordCharacter(text[at]));
  while (at > 0 && isEditWordCharacter(text[at - 1])) --at;
  return {from.line, static_cast<int64_t>(at)};
}

TextPlace deleteWordStart(const Document& document, TextPlace from) {
  const TextPlace place = wordLeftPlace(document, from);
  return place.line == from.line ? place : TextPlace{from.line, 0};
}

std::optional<TextRange> wordAt(const Document& document, TextPlace place) {
  const std::wstring text = document.text(place.line);
  auto at = static_cast<size_t>(place.index);
  if (at >= text.size() || !isEditWordCharacter(text[at])) {
    if (at == 0 || at > text.size() || !isEditWordCharacter(text[at - 1])) return {};
    --at;
  }
  size_t start = at;
  while (start > 0 && isEditWordCharacter(text[start - 1])) --start;
  return TextRange{{place.line, static_cast<int64_t>(start)},
                   {place.line, static_cast<int64_t>(skipWord(text, at))}};
}

namespace {
constexpr std::string_view Openers = "([{<";
constexpr std::string_view Closers = ")]}>";

// A walk from a bracket to its partner. Only the low 8 bits of a character count.
struct BracketScan {
  char same;
  char partner;
  int64_t depth = 0;

  // Whether `character` closes what the walk began with.
  bool closes(wchar_t character) {
    const char low = static_cast<char>(character);
    if (low == same) ++depth;
    return low == partner && --depth == 0;
  }
};

std::optional<TextPlace> scanForward(const Document& document, TextPlace place, BracketScan scan,
                                     const StopAsked& stop) {
  for (int64_t line = place.line; line < document.lineCount(); ++line) {
    const std::wstring text = document.text(line);
    const size_t start = line == place.line ? static_cast<size_t>(place.index) : 0;
    for (size_t i = start; i < text.size(); ++i)
      if (scan.closes(text[i])) return TextPlace{line, static_cast<int64_t>(i)};
    if (isStopped(line, stop)) return {};
  }
  return {};
}

std::optional<TextPlace> scanBackward(const Document& document, TextPlace place, BracketScan scan,
                                      const StopAsked& stop) {
  for (int64_t line = place.line; line >= 0; --line) {
    const std::wstring text = document.text(line);
    const size_t behind = line == place.line ? static_cast<size_t>(place.index) + 1 : text.size();
    for (size_t i = behind; i > 0; --i)
      if (scan.closes(text[i - 1])) return TextPlace{line, static_cast<int64_t>(i - 1)};
    if (isStopped(line, stop)) return {};
  }
  return {};
}
}  // namespace

std::optional<TextPlace> matchingBracket(const Document& document, TextPlace place,
                                         const StopAsked& stop) {
  const auto bracket = static_cast<char>(document.characterAt(place));
  if (bracket == 0) return {};
  if (const size_t kind = Openers.find(bracket); kind != std::string_view::npos)
    return scanForward(document, place, {bracket, Closers[kind]}, stop);
  if (const size_t kind = Closers.find(bracket); kind != std::string_view::npos)
    return scanBackward(document, place, {bracket, Openers[kind]}, stop);
  return {};
}

std::optional<std::wstring> leadingIndent(const Document& document, TextPlace place,
                                          const StopAsked& stop) {
  for (int64_t line = place.line; line >= 0; --line) {
    std::wstring text =
        line == place.line ? document.slice(line, 0, place.index) : document.text(line);
    const size_t length = indentLength(text);
    if (length < text.size()) {
      text.resize(length);
      return text;
    }
    if (isStopped(line, stop)) return {};
  }
  return {};
}

int indentStep(int indentWidth) {
  constexpr int Widest = 100;
  return std::clamp(indentWidth, 1, Widest);
}

namespace {
int64_t columnsOf(std::wstring_view text, int tabWidth) {
  int64_t column = 0;
  for (const wchar_t c : text) column += c == L'\t' ? tabWidth - column % tabWidth : 1;
  return column;
}

std::optional<std::wstring> indented(const std::wstring& line, int64_t delta, int tabWidth) {
  const size_t length = indentLength(line);
  if (length == line.size()) return {};
  const int64_t columns = columnsOf({line.data(), length}, tabWidth) + delta;
  const auto rest = static_cast<int64_t>(line.size() - length);
  if (columns < 0 || columns + rest > LongestEditedLine) return {};
  return std::wstring(static_cast<size_t>(columns), L' ').append(line, length);
}
}  // namespace

std::optional<TextChange> indentChange(const Document& document, int64_t first, int64_t behind,
                                       int64_t delta, int tabWidth, const StopAsked& stop) {
  if (behind <= first) return {};
  TextChange change{{first, 0}, {behind - 1, document.lineLength(behind - 1)}, {}};
  int64_t looked = 0;
  bool anyChanged = false;
  bool stopped = false;
  change.text = document.span(change.from, change.to).changed([&](const std::wstring& line) {
    stopped = stopped || isStopped(++looked, stop);
    std::optional<std::wstring> text;
    if (!stopped) text = indented(line, delta, tabWidth);
    anyChanged = anyChanged || text;
    return text;
  });
  return anyChanged && !stopped ? std::optional(change) : std::nullopt;
}

bool fitsLine(const Document& document, TextPlace from, TextPlace to, const TextSpan& text) {
  const int64_t kept = from.index + document.lineLength(to.line) - to.index;
  return kept + text.firstLength() <= LongestEditedLine;
}
