#include "fileops/target_name.h"

#include "foundation/names.h"
#include "foundation/path_info.h"

bool isNameMask(const Westring& destination, const Westring& source) {
  const Westring last = lastComponent(destination);
  if (!hasWildcard(last.data()) || sameName(last, lastComponent(source))) return false;
  return !endsInSlash(destination) || !isDirectoryPath(withoutSlashes(destination));
}

Westring targetName(const Westring& source, const Westring& destination) {
  const bool hadSlash = endsInSlash(destination);
  Westring path = withoutSlashes(destination);
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
