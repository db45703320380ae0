#pragma once

#include <vector>

#include "foundation/estring.h"

// The pairs of the section of variables as they were written, in file order, beside what they come
// to in configuredEnvironment(): a text such as $PATH:/x is written back as it was.
struct ConfiguredVariable {
  Estring name;
  Estring text;
};

// Application thread.
class ConfiguredVariables {
 public:
  void clear();  // of configuredEnvironment() too
  // Expands the home and variables in `text`, those of earlier pairs included, and sets the pair.
  // False for a name that no variable can have.
  bool add(const Estring& name, const Estring& text);
  const std::vector<ConfiguredVariable>& all() const { return pairs_; }

 private:
  std::vector<ConfiguredVariable> pairs_;
};

ConfiguredVariables& configuredVariables();  // those of the configuration
