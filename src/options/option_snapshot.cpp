#include "options/option_snapshot.h"

// NOLINTNEXTLINE(readability-function-size): a table
void OptionSnapshot::restore() const {
#define OPTION(kind, name, value) GlobalOptions::name = name##_;
#include "options/options.def"
}
