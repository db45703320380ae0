#include "fileops/file_attributes.h"

#include <cerrno>

#include "foundation/system.h"

namespace {

constexpr int NameOnly = O_PATH | O_CLOEXEC;
constexpr uid_t SameOwner = static_cast<uid_t>(-1);
constexpr gid_t SameGroup = static_cast<gid_t>(-1);

// True in `changed` when there was something to do. 0 or errno.
int changeOwnership(int fd, const AttributeChange& change, const struct stat& now, bool& changed) {
  const uid_t owner = change.owner.value_or(now.st_uid);
  const gid_t group = change.group.value_or(now.st_gid);
  changed = owner != now.st_uid || group != now.st_gid;
  if (!changed) return 0;
  const int result = System::fchown(fd, owner == now.st_uid ? SameOwner : owner,
                                    group == now.st_gid ? SameGroup : group);
  return result == 0 ? 0 : errno;
}

int look(int fd, struct stat& info) {
  return System::fstat(fd, &info) == 0 ? 0 : errno;
}

}  // namespace

int changeAttributes(const Place& file, const AttributeChange& change, struct stat& after) {
  const Descriptor fd(System::openAt(file.directory, file.name, NameOnly));
  if (!fd.valid()) return errno;
  if (const int error = look(fd.get(), after)) return error;
  const mode_t wanted = (after.st_mode & AttributeBits & ~change.clear) | change.set;
  bool owned = false;
  if (const int error = changeOwnership(fd.get(), change, after, owned)) return error;
  // A new owner or group takes set-id bits away.
  if (owned) {
    if (const int error = look(fd.get(), after)) return error;
  }
  if ((after.st_mode & AttributeBits) == wanted) return 0;
  if (System::fchmod(fd.get(), wanted) != 0) return errno;
  // Only these bits are left out in silence, where they aren't allowed.
  if ((wanted & (S_ISUID | S_ISGID | S_ISVTX)) != 0) return look(fd.get(), after);
  after.st_mode = (after.st_mode & S_IFMT) | wanted;
  return 0;
}
