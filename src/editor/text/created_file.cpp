#include "editor/text/created_file.h"

#include <fcntl.h>

#include <cerrno>

#include "foundation/system.h"
#include "foundation/written_place.h"

namespace {
constexpr mode_t NewFileMode = 0660;
}

int CreatedFile::create(const Westring& path, FileContent& content) {
  removeIfEmpty();
  content = {};
  WrittenPlace place;
  if (const int error = findWrittenPlace(bytePath(path), Links::Follow, place)) return error;
  constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
  const Descriptor file(
      System::openAt(place.directory.get(), place.name.c_str(), flags, NewFileMode));
  struct stat info;
  if (!file.valid() || System::fstat(file.get(), &info) < 0) return errno;
  path_ = place.directoryPath;
  replaceTail(path_, path_.size(), place.name.c_str());
  made_ = idOf(info);
  content.stamp = FileStamp::of(info);
  content.hash = ContentHash().value();
  return 0;
}

void CreatedFile::removeIfEmpty() {
  if (!made_) return;
  struct stat info;
  if (System::lstat(path_.c_str(), &info) == 0 && idOf(info) == *made_ && info.st_size == 0) {
    System::unlink(path_.c_str());
  }
  made_.reset();
}
