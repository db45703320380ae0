#include "options/options.h"

#include <climits>

namespace GlobalOptions {

// They have their defaults before main runs.
#define OPTION(kind, name, value) OptionValue<OptionKind::kind>::Type name = value;
#include "options/options.def"
Westring directoryShortcuts[ShortcutCount];

// NOLINTNEXTLINE(readability-function-size): a table
void setDefaultOptions() {
#define OPTION(kind, name, value) name = value;
#include "options/options.def"
  for (Westring& shortcut : directoryShortcuts) shortcut = L"";
}

namespace {

void correct(int& number, int usual, const OptionRange& range) {
  if (number != usual && (number < range.least || number > range.most)) number = range.otherwise;
}

}  // namespace

void correctNumbers() {
#define OPTION(kind, name, value)
#define NUMBER_OPTION(name, value, range) correct(name, value, range);
#include "options/options.def"
}

}  // namespace GlobalOptions
