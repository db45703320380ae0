#include "fileops/target_name.h"

#include "foundation/names.h"
#include "foundation/path_info.h"

namespace {

bool endsInSlash(const Westring& path) {
  const int length = path.length();
  return length > 0 && path[length - 1] == L'/';
}

// The root stays what it is.
Westring withoutSlash(const Westring& path) {
  return path.length() > 1 && endsInSlash(path) ? dropRight(path, 1) : path;
}

}  // namespace

bool isNameMask(const Westring& destination, const Westring& source) {
  const Westring last = lastComponent(destination);
  if (!hasWildcard(last.data()) || sameName(last, lastComponent(source))) return false;
  return !endsInSlash(destination) || !isDirectoryPath(withoutSlash(destination));
}

Westring targetName(const Westring& source, const Westring& destination) {
  const bool hadSlash = endsInSlash(destination);
  Westring path = withoutSlash(destination);
  const Westring name = lastComponent(source);
  const Westring last = lastComponent(path);
  if (isNameMask(destination, source)) {
    return joinPath(parentOf(path), applyRenameMask(name.data(), last.data()));
  }
  if (!hadSlash) {
    // A directory put onto its namesake is merged with it.
    if (!isDirectoryPath(path) || sameName(path, source) || sameName(last, name)) return path;
  }
  return joinPath(path, name);
}
