#include "fileops/folded_name.h"

#include <fcntl.h>

#include "foundation/fold.h"
#include "foundation/string_collections.h"
#include "foundation/system.h"
#include "foundation/utf8.h"

bool isInCaseFilter(const Westring& fileSystem, const Westring& filter) {
  if (fileSystem.empty()) return false;
  const Estring list = toUtf8(filter);
  for (const char* rest = list.data(); *rest != 0;) {
    const Estring field = trim(nextField(rest));
    if (sameWord(fromUtf8(field.data()).data(), fileSystem.data())) return true;
  }
  return false;
}

std::string foldedName(const char* name) {
  Westring folded = decodeFileName(name);
  lowerString(folded.data());
  return toUtf8(folded).data();
}

bool isDirectoryMember(int directory, const char* name) {
  struct stat info;
  return System::statAt(directory, name, &info, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(info.st_mode);
}
