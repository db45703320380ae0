#pragma once

#include "foundation/westring.h"

// How the configuration file says the value of an option; with it goes the type of its variable.
enum class OptionKind {
  Text,      // an Estring, as it is
  WideText,  // a Westring, in the encoding of the system's texts
  Number,
  Switch,     // a bool: "on" or "off"
  Character,  // one byte
  TimeMode,   // 12 or 24
  SortWord,   // a word for a SortCode
  StyleWord,  // a word for a PanelStyle
  TypeWord,   // a word for a PanelType
  Colours,    // the numbers of the colour table
  Former      // a key without a variable
};

template <OptionKind>
struct OptionValue {
  using Type = int;
};
template <>
struct OptionValue<OptionKind::Text> {
  using Type = Estring;
};
template <>
struct OptionValue<OptionKind::WideText> {
  using Type = Westring;
};
template <>
struct OptionValue<OptionKind::Switch> {
  using Type = bool;
};
template <>
struct OptionValue<OptionKind::Character> {
  using Type = char;
};

// A number outside `least` to `most` becomes `otherwise`, unless it is the option's default.
struct OptionRange {
  constexpr OptionRange(int from, int to, int instead)
      : least(from), most(to), otherwise(instead) {}
  int least;
  int most;
  int otherwise;
};

// The configuration variables, one global of one fixed type each; the name of a variable is its key
// in the configuration file, and options.def lists them. They belong to the application thread and
// live for the whole run.
namespace GlobalOptions {

#define OPTION(kind, name, value) extern OptionValue<OptionKind::kind>::Type name;
#include "options/options.def"

inline constexpr int ShortcutCount = 10;
extern Westring directoryShortcuts[ShortcutCount];  // d0 to d9

void setDefaultOptions();
void correctNumbers();  // those outside their range

}  // namespace GlobalOptions

// A set bit turns a confirmation off.
namespace ConfirmationOff {
inline constexpr int Delete = 1;  // a file or an empty directory, and "Delete?" of tagged files
inline constexpr int DeleteTagged = 2;  // the second question for tagged files
inline constexpr int DeleteTree = 4;    // a directory that isn't empty
inline constexpr int Quit = 8;
inline constexpr int TypedYes = 16;  // the tree question uses buttons instead of a typed word
}  // namespace ConfirmationOff
