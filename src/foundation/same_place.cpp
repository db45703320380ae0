#include "foundation/same_place.h"

#include <cstring>
#include <string>

#include "foundation/directory_names.h"
#include "foundation/place.h"
#include "foundation/system.h"

namespace {

enum class Look { AtLink, ThroughLink };

bool idOfPlace(const Place& place, Look look, FileId& id) {
  struct stat info;
  const int flags = look == Look::AtLink ? AT_SYMLINK_NOFOLLOW : 0;
  if (System::statAt(place.directory, place.name, &info, flags) < 0) return false;
  id = idOf(info);
  return true;
}

bool sameId(const Place& a, const Place& b, Look look) {
  FileId first;
  FileId second;
  return idOfPlace(a, look, first) && idOfPlace(b, look, second) && first == second;
}

bool idOfPath(const std::string& path, FileId& id) {
  return idOfPlace(placeOf(path.c_str()), Look::ThroughLink, id);
}

}  // namespace

bool isSameFile(const Place& a, const Place& b) {
  return strcmp(a.path, b.path) == 0 || sameId(a, b, Look::ThroughLink) ||
         sameId(a, b, Look::AtLink);
}

bool isOtherSpelling(const Place& source, const Place& target) {
  if (!sameId(source, target, Look::AtLink)) return false;
  FileId sourceParent;
  FileId targetParent;
  if (!idOfPath(byteParent(source.path), sourceParent) ||
      !idOfPath(byteParent(target.path), targetParent) || sourceParent != targetParent) {
    return false;
  }
  // Two hard links both stand in the directory; of one entry only one spelling does.
  OpenDirectory parent;
  DirectoryNames names;
  if (parent.open(AT_FDCWD, byteParent(target.path).c_str(), FollowLinks::Yes) != 0 ||
      names.read(parent.fd()) != 0) {
    return false;
  }
  const char* wanted = byteName(target.path);
  for (size_t i = 0; i < names.count(); ++i) {
    if (strcmp(names.name(i), wanted) == 0) return false;
  }
  return strcmp(byteName(source.path), wanted) != 0;
}

std::vector<FileId> directoriesAbove(const char* path) {
  std::vector<FileId> ids;
  constexpr int Flags = O_PATH | O_DIRECTORY | O_CLOEXEC;
  std::string at = path;
  Descriptor directory(System::open(at.c_str(), Flags));
  // What isn't there yet will lie in the nearest directory that is.
  while (!directory.valid() && byteParent(at) != at) {
    at = byteParent(at);
    directory = Descriptor(System::open(at.c_str(), Flags));
  }
  while (directory.valid()) {
    struct stat info;
    if (System::fstat(directory.get(), &info) < 0) break;
    if (!ids.empty() && ids.back() == idOf(info)) break;  // the root is its own parent
    ids.push_back(idOf(info));
    directory = Descriptor(System::openAt(directory.get(), "..", Flags));
  }
  return ids;
}

bool isPathPrefix(const char* source, const char* target) {
  const size_t length = strlen(source);
  if (strncmp(source, target, length) != 0) return false;
  return target[length] == 0 || target[length] == '/' || (length > 0 && source[length - 1] == '/');
}

bool liesInside(const char* source, FileId sourceId, const char* target) {
  if (isPathPrefix(source, target)) return true;
  for (const FileId& id : directoriesAbove(target)) {
    if (id == sourceId) return true;
  }
  return false;
}
