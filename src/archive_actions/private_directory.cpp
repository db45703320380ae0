#include "archive_actions/private_directory.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

#include "foundation/names.h"
#include "foundation/place.h"
#include "language/private_tree.h"
#include "language/temporary_names.h"
#include "ui/alert.h"

namespace {

constexpr mode_t OwnerFile = 0600;

bool writeAll(int fd, const std::string& bytes) {
  for (size_t done = 0; done < bytes.size();) {
    const ssize_t written = System::write(fd, bytes.data() + done, bytes.size() - done);
    if (written < 0) return false;
    done += static_cast<size_t>(written);
  }
  return true;
}

}  // namespace

PrivateDirectory::PrivateDirectory(PrivateDirectory&& other) noexcept
    : path_(std::move(other.path_)), directory_(std::move(other.directory_)) {}

PrivateDirectory& PrivateDirectory::operator=(PrivateDirectory&& other) noexcept {
  if (this != &other) {
    remove();
    path_ = std::move(other.path_);
    directory_ = std::move(other.directory_);
  }
  return *this;
}

int PrivateDirectory::make(const Westring& where) {
  remove();
  if (const int error = makeOwnedDirectory(where, path_); error != 0) return error;
  directory_ = Descriptor(
      System::open(bytePath(path_).c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (directory_.valid()) return 0;
  const int error = errno;
  System::rmdir(bytePath(path_).c_str());
  return error;
}

int PrivateDirectory::writeFile(const char* name, const std::string& bytes, Westring& path) const {
  Descriptor file(System::openAt(directory_.get(), name,
                                 O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, OwnerFile));
  if (!file.valid()) return errno;
  if (!writeAll(file.get(), bytes)) return errno;
  if (const int error = file.close(); error != 0) return error;
  path = joinPath(path_, decodeFileName(name));
  return 0;
}

void PrivateDirectory::keep() {
  directory_.reset();
}

void PrivateDirectory::remove() {
  if (!directory_.valid()) return;
  directory_.reset();
  const std::string path = bytePath(path_);
  const Descriptor parent(
      System::open(byteParent(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
  const int error =
      parent.valid() ? removePrivateTree(parent.get(), byteName(path.c_str())) : errno;
  if (error == 0 || error == ENOENT) return;
  alert("Temporary directory could not be removed", path_, AlertButtons::Ok, AlertColour::Error);
}
