#include "config/config_table.h"

#include <algorithm>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <span>

#include "foundation/fold.h"
#include "foundation/utf8.h"
#include "options/colours.h"

const ConfigKeyword configKeywordTable[ConfigKeywordCount] = {
#define OPTION(kind, name, value) {#name, OptionKind::kind, &GlobalOptions::name},
#define FORMER_OPTION(name) {#name, OptionKind::Former, {}},
#define COLOUR_OPTION(name) {#name, OptionKind::Colours, {}},
#include "options/options.def"
};

namespace {

constexpr int Hours12 = 12, Hours24 = 24;
constexpr const char* SortWords[] = {"name",  "extension",  "time",  "size",  "unsorted",
                                     "rname", "rextension", "rtime", "rsize", "unsorted"};
constexpr const char* StyleWords[] = {"brief", "full", "wide", "briefwide", "unix", "tree"};
constexpr const char* TypeWords[] = {"files", "info"};
constexpr int ReadStyles = 5;  // a tree comes back as the usual style
constexpr int UsualSort = 0, UsualStyle = 1, UsualType = 0;

int wordIndex(std::span<const char* const> words, const char* text, int otherwise) {
  for (size_t i = 0; i < words.size(); ++i) {
    if (sameWord(words[i], text)) return static_cast<int>(i);
  }
  return otherwise;
}

const char* wordOf(std::span<const char* const> words, int value, int otherwise) {
  const bool isThere = value >= 0 && value < static_cast<int>(words.size());
  return words[static_cast<size_t>(isThere ? value : otherwise)];
}

int numberOf(const char* text) {
  return static_cast<int>(std::clamp<long>(strtol(text, nullptr, 10), INT_MIN, INT_MAX));
}

int numberOf(OptionKind kind, const char* text) {
  switch (kind) {
    case OptionKind::TimeMode:
      return strcmp(text, "24") == 0 ? Hours24 : Hours12;
    case OptionKind::SortWord:
      return wordIndex(SortWords, text, UsualSort);
    case OptionKind::StyleWord:
      return wordIndex(std::span(StyleWords).first(ReadStyles), text, UsualStyle);
    case OptionKind::TypeWord:
      return wordIndex(TypeWords, text, UsualType);
    default:
      return numberOf(text);
  }
}

Estring textOf(OptionKind kind, int value) {
  switch (kind) {
    case OptionKind::SortWord:
      return wordOf(SortWords, value, UsualSort);
    case OptionKind::StyleWord:
      return wordOf(StyleWords, value, UsualStyle);
    case OptionKind::TypeWord:
      return wordOf(TypeWords, value, UsualType);
    default:
      return Estring(static_cast<long>(value));
  }
}

// Those that the table has no place for are dropped, and those that don't come leave it as it is.
void setColours(const char* text) {
  for (unsigned char& attr : colourTable) {
    if (*text == 0) return;
    attr = static_cast<unsigned char>(strtol(text, nullptr, 10));
    const char* blank = strchr(text, ' ');
    text = blank ? blank + 1 : "";
  }
}

Estring coloursText() {
  std::string text;
  for (unsigned char attr : colourTable) text += std::to_string(attr) + ' ';
  return Estring(text.c_str());
}

// Puts a text into the variable of a row.
struct Setter {
  OptionKind kind;
  const char* text;

  void operator()(std::monostate) const {
    if (kind == OptionKind::Colours) setColours(text);
  }
  void operator()(Estring* variable) const { *variable = text; }
  void operator()(Westring* variable) const { *variable = decodeFileName(text); }
  void operator()(int* variable) const { *variable = numberOf(kind, text); }
  void operator()(bool* variable) const { *variable = sameWord(text, "on"); }
  void operator()(char* variable) const {
    // What no key can type is no such character.
    if (*text > ' ' && *text <= '~') *variable = *text;
  }
};

struct Getter {
  OptionKind kind;

  Estring operator()(std::monostate) const {
    return kind == OptionKind::Colours ? coloursText() : Estring();
  }
  Estring operator()(const Estring* variable) const { return *variable; }
  Estring operator()(const Westring* variable) const { return toUtf8(*variable); }
  Estring operator()(const int* variable) const { return textOf(kind, *variable); }
  Estring operator()(const bool* variable) const { return *variable ? "on" : "off"; }
  Estring operator()(const char* variable) const { return Estring(*variable, 1); }
};

}  // namespace

const ConfigKeyword* findConfigKeyword(const char* key) {
  const auto* found =
      std::find_if(std::begin(configKeywordTable), std::end(configKeywordTable),
                   [key](const ConfigKeyword& row) { return sameWord(row.key, key); });
  return found == std::end(configKeywordTable) ? nullptr : found;
}

void setOption(const ConfigKeyword& keyword, const char* text) {
  std::visit(Setter{keyword.kind, text}, keyword.variable);
}

Estring optionText(const ConfigKeyword& keyword) {
  return std::visit(Getter{keyword.kind}, keyword.variable);
}

int shortcutOfKey(const char* key) {
  const bool isShortcut =
      lowerAscii(key[0]) == 'd' && key[1] >= '0' && key[1] <= '9' && key[2] == 0;
  return isShortcut ? key[1] - '0' : -1;
}
