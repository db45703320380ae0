#include "foundation/directory_names.h"

#include <cerrno>
#include <cstring>

namespace {

constexpr size_t RecordBytes = 32 * 1024;

bool isDots(const char* name) {
  return name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
}

}  // namespace

int OpenDirectory::open(int directory, const char* name, FollowLinks links) {
  const int noFollow = links == FollowLinks::No ? O_NOFOLLOW : 0;
  close();
  directory_ =
      Descriptor(System::openAt(directory, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | noFollow));
  return isOpen() ? 0 : errno;
}

int OpenDirectory::id(FileId& result) const {
  struct stat info;
  if (System::fstat(fd(), &info) < 0) return errno;
  result = idOf(info);
  return 0;
}

int DirectoryNames::read(int directory) {
  clear();
  for (bool more = true; more;) {
    if (const int error = readSome(directory, more)) return error;
  }
  return 0;
}

int DirectoryNames::readSome(int directory, bool& more) {
  alignas(dirent64) char records[RecordBytes];
  const ssize_t got = System::readNames(directory, records, sizeof records);
  more = got > 0;
  // A directory that was removed while it is open has an end, and no names.
  if (got < 0) return errno == ENOENT ? 0 : errno;
  for (ssize_t at = 0; at < got;) {
    const auto* item = reinterpret_cast<const dirent64*>(records + at);
    at += item->d_reclen;
    if (isDots(item->d_name)) continue;
    starts_.push_back(block_.size());
    block_ += static_cast<char>(item->d_type);
    block_.append(item->d_name, strlen(item->d_name) + 1);
  }
  return 0;
}

void DirectoryNames::clear() {
  block_.clear();
  starts_.clear();
}
