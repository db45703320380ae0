#include "archive_actions/private_directory.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>
#include <vector>

#include "foundation/directory_names.h"
#include "foundation/names.h"
#include "foundation/open_beneath.h"
#include "foundation/place.h"
#include "language/private_tree.h"
#include "language/temporary_names.h"

namespace {

constexpr mode_t OwnerFile = 0600;
constexpr int JustNamed = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

bool isAscii(char byte) {
  return static_cast<unsigned char>(byte) < 0x80;
}

bool isLikely(const char* found, const std::string& wanted) {
  size_t i = 0;
  for (; i < wanted.size() && found[i] != 0; ++i) {
    if (isAscii(found[i]) != isAscii(wanted[i])) return false;
    if (isAscii(wanted[i]) && found[i] != wanted[i]) return false;
  }
  return i == wanted.size() && found[i] == 0;
}

// The name in a directory that `wanted` most likely became, or "".
std::string likelyName(int directory, const std::string& wanted) {
  OpenDirectory names;
  DirectoryNames list;
  if (names.open(directory, ".", FollowLinks::No) != 0) return "";
  if (list.read(names.fd()) != 0) return "";
  std::string result;
  for (size_t i = 0; i < list.count(); ++i) {
    if (!isLikely(list.name(i), wanted)) continue;
    if (!result.empty()) return "";
    result = list.name(i);
  }
  return result;
}

int look(int directory, const std::string& name, struct stat& info) {
  return System::statAt(directory, name.c_str(), &info, AT_SYMLINK_NOFOLLOW) == 0 ? 0 : errno;
}

// Finds `name` in the directory; it may become another one.
int findName(int directory, std::string& name, NameMatch match, struct stat& info) {
  const int error = look(directory, name, info);
  if (error != ENOENT || match == NameMatch::Exact) return error;
  name = likelyName(directory, name);
  return name.empty() ? ENOENT : look(directory, name, info);
}

std::vector<std::string> componentsOf(const std::string& path) {
  std::vector<std::string> result;
  for (size_t start = 0; start < path.size();) {
    const size_t end = std::min(path.find('/', start), path.size());
    const std::string component = path.substr(start, end - start);
    if (!component.empty() && component != ".") result.push_back(component);
    start = end + 1;
  }
  return result;
}

// One step at a time: openat2 isn't everywhere, and a name may become a likely one.
int goBelow(Descriptor& directory, std::string& name, NameMatch match) {
  struct stat info;
  if (name == "..") return ELOOP;
  if (const int error = findName(directory.get(), name, match, info); error != 0) return error;
  if (S_ISLNK(info.st_mode)) return ELOOP;
  Descriptor next(System::openAt(directory.get(), name.c_str(), JustNamed));
  if (!next.valid()) return errno;
  directory = std::move(next);
  return 0;
}

std::string joined(const std::vector<std::string>& components, size_t count) {
  std::string path;
  for (size_t i = 0; i < count; ++i) path += (i > 0 ? "/" : "") + components[i];
  return path;
}

int openParent(int top, std::vector<std::string>& components, NameMatch match, Descriptor& parent) {
  const std::string path = "./" + joined(components, components.size() - 1);
  parent = Descriptor(System::openBeneath(top, path.c_str(), JustNamed));
  if (parent.valid()) return 0;
  const bool missing = errno == ENOENT && match == NameMatch::Likely;
  if (!missing && errno != ENOSYS && errno != EPERM && errno != ENAMETOOLONG) return errno;
  parent = Descriptor(System::openAt(top, ".", JustNamed));
  if (!parent.valid()) return errno;
  for (size_t i = 0; i + 1 < components.size(); ++i) {
    if (const int error = goBelow(parent, components[i], match); error != 0) return error;
  }
  return 0;
}

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
  if (parent.valid()) removePrivateTree(parent.get(), byteName(path.c_str()));
}

int findWritten(int top, const std::string& path, NameMatch match, FoundPlace& place) {
  std::vector<std::string> components = componentsOf(path);
  if (components.empty()) return ENOENT;
  if (const int error = openParent(top, components, match, place.parent); error != 0) return error;
  place.name = components.back();
  if (place.name == "..") return ELOOP;
  const int error = findName(place.parent.get(), place.name, match, place.info);
  components.back() = place.name;
  place.path = joined(components, components.size());
  return error;
}

int findWrittenFile(int top, const std::string& path, NameMatch match, FoundPlace& place) {
  if (const int error = findWritten(top, path, match, place); error != 0) return error;
  return S_ISREG(place.info.st_mode) && place.info.st_nlink == 1 ? 0 : EINVAL;
}
