#include "foundation/written_place.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

#include "foundation/place.h"

namespace {

constexpr int MostLinks = 40;  // as many as the system itself follows
constexpr int DirectoryOnly = O_PATH | O_DIRECTORY | O_CLOEXEC;

// 0 and the text of a link; 0 and nothing where there is none; else errno.
int readLink(int directory, const char* name, std::string& text) {
  text.resize(LongestPath + 1);
  const ssize_t length = System::readlinkAt(directory, name, text.data(), text.size());
  const int error = length < 0 ? errno : 0;
  text.resize(length < 0 ? 0 : static_cast<size_t>(length));
  if (error == EINVAL || error == ENOENT) return 0;
  if (text.size() > LongestPath) return ENAMETOOLONG;
  return error;
}

// In a directory for everybody only a link of one's own, or of the directory's owner, is trusted.
bool isTrusted(int directory, const char* name) {
  struct stat parent;
  struct stat link;
  if (System::fstat(directory, &parent) < 0) return false;
  constexpr mode_t Shared = S_ISVTX | S_IWOTH;
  if ((parent.st_mode & Shared) != Shared) return true;
  return System::statAt(directory, name, &link, AT_SYMLINK_NOFOLLOW) == 0 &&
         (link.st_uid == geteuid() || link.st_uid == parent.st_uid);
}

// The directory of `path`, which is relative to the one that `place` holds.
int enterParent(const std::string& path, WrittenPlace& place) {
  const std::string parent = byteParent(path);
  const int from = place.directory.valid() ? place.directory.get() : AT_FDCWD;
  Descriptor opened(System::openAt(from, parent.c_str(), DirectoryOnly));
  if (!opened.valid()) return errno;
  if (!place.directory.valid() || parent[0] == '/') {
    place.directoryPath = parent;
  } else {
    replaceTail(place.directoryPath, place.directoryPath.size(), parent.c_str());
  }
  place.directory = std::move(opened);
  place.name = byteName(path.c_str());
  return place.name.empty() || place.name == "." || place.name == ".." ? EISDIR : 0;
}

}  // namespace

int findWrittenPlace(const std::string& path, Links links, WrittenPlace& place) {
  place = WrittenPlace();
  std::string rest = path;
  for (int followed = 0; followed <= MostLinks; ++followed) {
    if (const int error = enterParent(rest, place)) return error;
    if (const int error = readLink(place.directory.get(), place.name.c_str(), rest)) return error;
    if (rest.empty()) return 0;
    if (links == Links::Refuse) return ELOOP;
    if (!isTrusted(place.directory.get(), place.name.c_str())) return EACCES;
  }
  return ELOOP;
}
