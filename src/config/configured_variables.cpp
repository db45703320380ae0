#include "config/configured_variables.h"

#include "foundation/utf8.h"
#include "language/environment.h"

void ConfiguredVariables::clear() {
  for (const ConfiguredVariable& pair : pairs_) {
    configuredEnvironment().set(pair.name.data(), nullptr);
  }
  pairs_.clear();
}

bool ConfiguredVariables::add(const Estring& name, const Estring& text) {
  if (name.empty()) return false;
  const Westring value = expandPathVariables(decodeFileName(text.data()));
  configuredEnvironment().set(name.data(), toUtf8(value).data());
  pairs_.push_back({name, text});
  return true;
}

ConfiguredVariables& configuredVariables() {
  static ConfiguredVariables variables;
  return variables;
}
