#include "editor/text/created_file.h"

#include <fcntl.h>

#include <cerrno>

#include "foundation/system.h"
#include "foundation/utf8.h"

namespace {
constexpr mode_t NewFileMode = 0660;
}

int CreatedFile::create(const Westring& path, FileContent& content) {
  removeIfEmpty();
  content = {};
  constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
  Descriptor file(System::open(toUtf8(path).data(), flags, NewFileMode));
  struct stat info;
  if (!file.valid() || System::fstat(file.get(), &info) < 0) return errno;
  path_ = path;
  made_ = idOf(info);
  content.stamp = FileStamp::of(info);
  content.hash = ContentHash().value();
  return 0;
}

void CreatedFile::removeIfEmpty() {
  if (!made_) return;
  struct stat info;
  const Estring path = toUtf8(path_);
  if (System::lstat(path.data(), &info) == 0 && idOf(info) == *made_ && info.st_size == 0) {
    System::unlink(path.data());
  }
  made_.reset();
}
