#include "fileops/moved_links.h"

#include <cerrno>
#include <cstdio>

#include "foundation/system.h"

namespace {

// The path of an open directory as it is now; "" where the system doesn't tell it.
std::string pathOfDirectory(int directory) {
  char link[32];
  snprintf(link, sizeof link, "/proc/self/fd/%d", directory);
  std::string path(LongestPath, 0);
  const ssize_t length = System::readlink(link, path.data(), path.size());
  path.resize(length > 0 && path[0] == '/' ? static_cast<size_t>(length) : 0);
  return path;
}

std::string actualPath(const Place& place) {
  if (place.directory == AT_FDCWD) return {};
  std::string path = pathOfDirectory(place.directory);
  if (!path.empty()) replaceTail(path, path.size(), place.name);
  return path;
}

// The same file with the same content, however many names it has by now.
bool isAsBefore(const struct stat& before, const struct stat& now) {
  return idOf(before) == idOf(now) && before.st_size == now.st_size &&
         (before.st_mode & S_IFMT) == (now.st_mode & S_IFMT) &&
         before.st_mtim.tv_sec == now.st_mtim.tv_sec &&
         before.st_mtim.tv_nsec == now.st_mtim.tv_nsec;
}

}  // namespace

void MovedLinks::remember(const struct stat& source, const Place& target) {
  if (source.st_nlink < 2) return;
  Made made;
  if (System::statAt(target.directory, target.name, &made.info, AT_SYMLINK_NOFOLLOW) < 0) return;
  made.path = target.path;
  made.actual = actualPath(target);
  made.source = source;
  made.left = source.st_nlink - 1;
  made_[idOf(source)] = made;
}

int MovedLinks::linkFrom(const std::string& path, const Made& made, const Place& target) {
  struct stat now;
  if (System::lstat(path.c_str(), &now) < 0) return errno;
  if (!isAsBefore(made.info, now)) return ENOENT;
  if (System::linkAt(AT_FDCWD, path.c_str(), target.directory, target.name) < 0) return errno;
  // Another one may have changed the place between the look and the link.
  if (System::statAt(target.directory, target.name, &now, AT_SYMLINK_NOFOLLOW) == 0 &&
      isAsBefore(made.info, now)) {
    return 0;
  }
  System::unlinkAt(target.directory, target.name, 0);
  return ENOENT;
}

int MovedLinks::link(const struct stat& source, const Place& target) {
  const auto found = made_.find(idOf(source));
  if (found == made_.end()) return ENOENT;
  Made& made = found->second;
  if (!isAsBefore(made.source, source)) return ENOENT;
  int error = linkFrom(made.path, made, target);
  if (error == ENOENT && !made.actual.empty()) error = linkFrom(made.actual, made, target);
  if (error == 0 && --made.left == 0) made_.erase(found);
  return error;
}
