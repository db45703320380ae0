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

// The characters of one line, a stretch at a time: a line may be as long as a file.
class LineCharacters {
 public:
  LineCharacters(const Document& document, int64_t line)
      : document_(document), line_(line), length_(document.lineLength(line)) {}

  int64_t length() const { return length_; }
  wchar_t operator[](int64_t index) {
    constexpr int64_t Stretch = 4096;
    if (index < begin_ || index >= begin_ + static_cast<int64_t>(stretch_.size())) {
      begin_ = index / Stretch * Stretch;
      stretch_ = document_.slice(line_, begin_, Stretch);
    }
    return stretch_[static_cast<size_t>(index - begin_)];
  }
  bool isWordAt(int64_t index) { return isEditWordCharacter((*this)[index]); }

  int64_t skipWord(int64_t at) {
    while (at < length_ && isWordAt(at)) ++at;
    return at;
  }
  int64_t skipOthers(int64_t at) {
    while (at < length_ && !isWordAt(at)) ++at;
    return at;
  }

 private:
  const Document& document_;
  int64_t line_;
  int64_t length_;
  int64_t begin_ = 0;
  std::wstring stretch_;
};
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
  LineCharacters text(document, from.line);
  if (from.index >= text.length()) return placeRight(document, from);
  if (kind == WordRight::Brief) return {from.line, text.skipWord(text.skipOthers(from.index))};
  const TextPlace place{from.line, text.skipOthers(text.skipWord(from.index + 1))};
  return place.index == text.length() ? placeRight(document, place) : place;
}

TextPlace wordLeftPlace(const Document& document, TextPlace from) {
  if (from.index == 0) return placeLeft(document, from);
  LineCharacters text(document, from.line);
  int64_t at = std::min(from.index, text.length());
  // A step that comes to the line's start goes on to the line above, whatever stands there.
  do {
    if (--at <= 0) return placeLeft(document, {from.line, 0});
  } while (!text.isWordAt(at));
  while (at > 0 && text.isWordAt(at - 1)) --at;
  return {from.line, at};
}

TextPlace deleteWordStart(const Document& document, TextPlace from) {
  const TextPlace place = wordLeftPlace(document, from);
  return place.line == from.line ? place : TextPlace{from.line, 0};
}

std::optional<TextRange> wordAt(const Document& document, TextPlace place) {
  LineCharacters text(document, place.line);
  int64_t at = std::min(place.index, text.length());
  if (at == text.length() || !text.isWordAt(at)) {
    if (at == 0 || !text.isWordAt(at - 1)) return {};
    --at;
  }
  int64_t start = at;
  while (start > 0 && text.isWordAt(start - 1)) --start;
  return TextRange{{place.line, start}, {place.line, text.skipWord(at)}};
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

// Looks for a key now and then, counting what was looked at.
class StopWatch {
 public:
  explicit StopWatch(const StopAsked& stop) : stop_(stop) {}
  bool isStopped() {
    constexpr int CharactersBetweenLooks = 65536;
    if (++count_ < CharactersBetweenLooks) return false;
    count_ = 0;
    return stop_ && stop_();
  }

 private:
  const StopAsked& stop_;
  int count_ = 0;
};

std::optional<TextPlace> scanForward(const Document& document, TextPlace place, BracketScan scan,
                                     const StopAsked& stop) {
  StopWatch watch(stop);
  for (; place.line < document.lineCount(); place = {place.line + 1, 0}) {
    LineCharacters text(document, place.line);
    for (; place.index < text.length(); ++place.index) {
      if (scan.closes(text[place.index])) return place;
      if (watch.isStopped()) return {};
    }
    if (watch.isStopped()) return {};
  }
  return {};
}

std::optional<TextPlace> scanBackward(const Document& document, TextPlace place, BracketScan scan,
                                      const StopAsked& stop) {
  StopWatch watch(stop);
  for (; place.line >= 0; place = {place.line - 1, INT64_MAX}) {
    LineCharacters text(document, place.line);
    for (place.index = std::min(place.index, text.length() - 1); place.index >= 0; --place.index) {
      if (scan.closes(text[place.index])) return place;
      if (watch.isStopped()) return {};
    }
    if (watch.isStopped()) return {};
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
    LineCharacters text(document, line);
    const int64_t end = line == place.line ? std::min(place.index, text.length()) : text.length();
    int64_t length = 0;
    while (length < end && isEditBlank(text[length])) ++length;
    if (length < end) return document.slice(line, 0, length);
    if (isStopped(line, stop)) return {};
  }
  return {};
}

namespace {
constexpr int WidestIndentStep = 100;
constexpr size_t MostBytesOfACharacter = 4;
// A line with more bytes is longer than a changed one may be, whatever its indent becomes.
constexpr size_t MostIndentedBytes = (LongestEditedLine + WidestIndentStep) * MostBytesOfACharacter;
}  // namespace

int indentStep(int indentWidth) {
  return std::clamp(indentWidth, 1, WidestIndentStep);
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
  const auto changed = [&](const std::wstring& line) {
    stopped = stopped || isStopped(++looked, stop);
    std::optional<std::wstring> text;
    if (!stopped) text = indented(line, delta, tabWidth);
    anyChanged = anyChanged || text;
    return text;
  };
  change.text = document.span(change.from, change.to).changed(MostIndentedBytes, changed);
  return anyChanged && !stopped ? std::optional(change) : std::nullopt;
}

bool fitsLine(const Document& document, TextPlace from, TextPlace to, const TextSpan& text) {
  const int64_t kept = from.index + document.lineLength(to.line) - to.index;
  return kept + text.firstLength() <= LongestEditedLine;
}
