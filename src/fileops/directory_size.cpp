#include "fileops/directory_size.h"

#include <memory>
#include <vector>

#include "foundation/directory_names.h"
#include "foundation/place.h"
#include "foundation/system.h"

namespace {

// Adds the files of one directory, and its subdirectories to those that wait.
int64_t sizeOfOne(const Place& place, std::vector<std::string>& waiting) {
  OpenDirectory directory;
  DirectoryNames names;
  if (directory.open(place.directory, place.name, FollowLinks::No) != 0) return 0;
  static_cast<void>(names.read(directory.fd()));
  int64_t bytes = 0;
  for (size_t i = 0; i < names.count(); ++i) {
    struct stat info;
    if (System::statAt(directory.fd(), names.name(i), &info, AT_SYMLINK_NOFOLLOW) < 0) continue;
    if (S_ISREG(info.st_mode)) bytes += info.st_size;
    if (!S_ISDIR(info.st_mode)) continue;
    waiting.emplace_back(place.path);
    replaceTail(waiting.back(), waiting.back().size(), names.name(i));
  }
  return bytes;
}

}  // namespace

std::optional<int64_t> directorySize(RunningOperation& operation, const Place& directory) {
  std::vector<std::string> waiting;
  int64_t bytes = sizeOfOne(directory, waiting);
  while (!waiting.empty()) {
    if (operation.cancelled()) return std::nullopt;
    const std::string path = std::move(waiting.back());
    waiting.pop_back();
    bytes += sizeOfOne(placeOf(path.c_str()), waiting);
  }
  return bytes;
}
