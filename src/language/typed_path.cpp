#include "language/typed_path.h"

#include <algorithm>

#include "foundation/canonical_path.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "language/environment.h"

namespace {

void addBothReadings(const Westring& text, const Westring& base, std::vector<Westring>& meanings) {
  auto add = [&meanings](const Westring& path) {
    auto isThere = [&path](const Westring& one) { return sameName(one, path); };
    if (std::none_of(meanings.begin(), meanings.end(), isThere)) meanings.push_back(path);
  };
  Westring written = text;
  if (writtenPath(written, &base) == 0) add(written);
  Westring typed = text;
  if (canonicalPath(typed, &base) == 0) add(typed);
}

}  // namespace

std::vector<Westring> pathMeanings(const Westring& text, const Westring& base) {
  std::vector<Westring> meanings;
  addBothReadings(text, base, meanings);
  const Westring expanded = expandPathVariables(text);
  if (!sameName(expanded, text)) addBothReadings(expanded, base, meanings);
  return meanings;
}

bool existsAsWritten(const Westring& text, const Westring& base, Westring& path) {
  Westring written = text;
  if (writtenPath(written, &base) != 0 || !pathExists(written)) return false;
  path = written;
  return true;
}
