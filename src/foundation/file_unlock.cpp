#include "foundation/file_unlock.h"

#include <cerrno>

#include "foundation/system.h"
#include "foundation/utf8.h"

namespace {
constexpr mode_t PermissionBits = 07777;
}

int FileUnlock::unlock(const Westring& path) {
  relock();
  struct stat info;
  const Estring encoded = toUtf8(path);
  if (System::stat(encoded.data(), &info) < 0) return errno;
  if (info.st_mode & S_IWUSR) return EACCES;
  const mode_t mode = info.st_mode & PermissionBits;
  if (System::chmod(encoded.data(), mode | S_IWUSR) < 0) return errno;
  name_ = path;
  mode_ = mode;
  device_ = info.st_dev;
  inode_ = info.st_ino;
  locked_ = true;
  return 0;
}

int FileUnlock::relock() {
  if (!locked_) return 0;
  locked_ = false;
  const Estring encoded = toUtf8(name_);
  struct stat info;
  if (System::stat(encoded.data(), &info) < 0) return errno;
  if (info.st_dev != device_ || info.st_ino != inode_) return 0;
  return System::chmod(encoded.data(), mode_) == 0 ? 0 : errno;
}
