#pragma once

#include "options/options.h"

// All options as they are when this is made, but for the colours and the shortcuts.
class OptionSnapshot {
 public:
  void restore() const;

 private:
#define OPTION(kind, name, value) OptionValue<OptionKind::kind>::Type name##_ = GlobalOptions::name;
#include "options/options.def"
};
