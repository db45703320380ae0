#include "foundation/directory_names.h"

#include <cerrno>
#include <cstring>

#include "foundation/system.h"

namespace {

bool isDots(const char* name) {
  return name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
}

}  // namespace

OpenDirectory& OpenDirectory::operator=(OpenDirectory&& other) noexcept {
  if (this != &other) {
    close();
    stream_ = other.stream_;
    other.stream_ = nullptr;
  }
  return *this;
}

int OpenDirectory::open(int directory, const char* name, FollowLinks links) {
  close();
  const int noFollow = links == FollowLinks::No ? O_NOFOLLOW : 0;
  Descriptor fd(System::openAt(directory, name, O_RDONLY | O_DIRECTORY | O_CLOEXEC | noFollow));
  if (!fd.valid()) return errno;
  stream_ = System::openDirectoryFd(fd.get());
  if (!stream_) return errno;
  fd.release();
  return 0;
}

void OpenDirectory::close() {
  if (stream_) System::closeDirectory(stream_);
  stream_ = nullptr;
}

int OpenDirectory::fd() const {
  return stream_ ? dirfd(stream_) : -1;
}

int OpenDirectory::id(FileId& result) const {
  struct stat info;
  if (System::fstat(fd(), &info) < 0) return errno;
  result = idOf(info);
  return 0;
}

int DirectoryNames::read(const OpenDirectory& directory) {
  clear();
  for (;;) {
    const dirent* item = System::readDirectory(directory.stream());
    if (!item) return errno;
    if (isDots(item->d_name)) continue;
    starts_.push_back(block_.size());
    block_ += static_cast<char>(item->d_type);
    block_.append(item->d_name, strlen(item->d_name) + 1);
  }
}

void DirectoryNames::clear() {
  block_.clear();
  starts_.clear();
}
