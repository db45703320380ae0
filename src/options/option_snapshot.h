#pragma once

#include "options/options.h"

// All options as they are when this is made, but for the colours and the shortcuts.
struct OptionSnapshot {
  void restore() const;

#define OPTION(kind, name, value) OptionValue<OptionKind::kind>::Type name = GlobalOptions::name;
#include "options/options.def"
};
