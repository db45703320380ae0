#pragma once

#include <variant>

#include "foundation/westring.h"
#include "options/options.h"

// One key of the section of general options. Without a variable it is taken and not written, or
// stands for the colour table.
struct ConfigKeyword {
  const char* key;
  OptionKind kind;
  std::variant<std::monostate, Estring*, Westring*, int*, bool*, char*> variable;
};

// The rows in the order of the file, made from options.def.
enum class ConfigRow {
#define OPTION(kind, name, value) name,
#define FORMER_OPTION(name) name,
#define COLOUR_OPTION(name) name,
#include "options/options.def"
  Count
};
inline constexpr auto ConfigKeywordCount = static_cast<int>(ConfigRow::Count);
extern const ConfigKeyword configKeywordTable[ConfigKeywordCount];

// Null for a key that there isn't; its case doesn't count.
const ConfigKeyword* findConfigKeyword(const char* key);
// Whether its row is written.
inline bool isWritten(const ConfigKeyword& keyword) {
  return keyword.kind != OptionKind::Former;
}
// Converts the text of the file by the row's kind.
void setOption(const ConfigKeyword& keyword, const char* text);
// The value as the file says it.
Estring optionText(const ConfigKeyword& keyword);
// The number of the shortcut whose key this is, d0 to d9, or -1.
int shortcutOfKey(const char* key);
