#include "foundation/partial_file.h"

#include <cerrno>

#include "foundation/not_offered.h"

namespace {

constexpr int NewFile = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;

}  // namespace

std::string pathBeside(const Place& place, const std::string& name) {
  std::string path = byteParent(place.path);
  replaceTail(path, path.size(), byteName(name.c_str()));
  return path;
}

int PartialFile::createDirectly(const Place& target, mode_t mode) {
  Descriptor fd(System::openAt(target.directory, target.name, NewFile, mode));
  if (!fd.valid()) return errno;
  fd_ = std::move(fd);
  name_ = target.name;
  target_ = target;
  way_ = Way::Direct;
  return 0;
}

int PartialFile::createBeside(const Place& target, mode_t mode) {
  const int error = makeBeside(target, name_, [&](const char* name) {
    fd_ = Descriptor(System::openAt(target.directory, name, NewFile, mode));
    return fd_.valid() ? 0 : errno;
  });
  if (error) return error;
  target_ = target;
  way_ = Way::Beside;
  return 0;
}

int PartialFile::openInPlace(const Place& target, FileId looked) {
  Descriptor fd(System::openAt(target.directory, target.name,
                               O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
  if (!fd.valid()) return errno;
  struct stat info;
  if (System::fstat(fd.get(), &info) < 0) return errno;
  if (!S_ISREG(info.st_mode) || info.st_nlink != 1 || idOf(info) != looked) return EACCES;
  if (System::truncate(fd.get(), 0) < 0) return errno;
  fd_ = std::move(fd);
  target_ = target;
  way_ = Way::InPlace;
  return 0;
}

int PartialFile::commit(Replace replace) {
  if (replace == Replace::Yes && System::sync(fd_.get()) < 0 && !isNotOffered(errno)) return errno;
  if (const int error = fd_.close()) return error;
  if (way_ == Way::Beside) {
    const int result =
        replace == Replace::Yes
            ? System::renameAt(target_.directory, name_.c_str(), target_.directory, target_.name)
            : System::renameAtNoReplace(target_.directory, name_.c_str(), target_.directory,
                                        target_.name);
    if (result < 0) return errno;
  }
  way_ = Way::None;
  return 0;
}

int PartialFile::discard() {
  fd_.reset();
  int error = 0;
  if (way_ == Way::Direct || way_ == Way::Beside) {
    error = System::unlinkAt(target_.directory, name_.c_str(), 0) == 0 ? 0 : errno;
  }
  way_ = Way::None;
  return error == ENOENT ? 0 : error;
}

std::string PartialFile::path() const {
  return pathBeside(target_, name_);
}
