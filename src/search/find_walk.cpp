#include "search/find_walk.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <cstring>

#include "foundation/mount_id.h"
#include "foundation/place.h"
#include "foundation/system.h"

namespace {

constexpr size_t NamesBytes = 65536;

bool isDotOrDotDotName(const char* name) {
  return name[0] == '.' && (name[1] == 0 || (name[1] == '.' && name[2] == 0));
}

unsigned char typeOf(int directory, const char* name) {
  struct stat info;
  if (System::statAt(directory, name, &info, AT_SYMLINK_NOFOLLOW) != 0) return DT_UNKNOWN;
  return static_cast<unsigned char>(IFTODT(info.st_mode));
}

}  // namespace

bool FindWalk::run(const std::vector<std::string>& starts) {
  queue_.clear();
  for (const std::string& start : starts) queue_.push_back({start, 0, true});
  while (!queue_.empty()) {
    const Waiting directory = std::move(queue_.front());
    queue_.pop_front();
    if (!list(directory)) return false;
  }
  return true;
}

// A descriptor, or -1 for a directory that is passed over.
int FindWalk::open(const Waiting& directory, dev_t& device) {
  const int links = directory.isStart ? 0 : O_NOFOLLOW;
  Descriptor fd(System::open(directory.path.c_str(),
                             O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK | links));
  struct stat info;
  if (!fd.valid() || System::fstat(fd.get(), &info) != 0) return -1;
  device = info.st_dev;
  const bool crossed = !directory.isStart && device != directory.deviceAbove;
  if (crossed && isKernelFileSystem(fd.get())) return -1;
  return fd.release();
}

bool FindWalk::list(const Waiting& directory) {
  if (!visitor_.enter(directory.path)) return false;
  dev_t device = 0;
  const Descriptor fd(open(directory, device));
  if (!fd.valid()) return true;
  const std::string prefix = directory.path.back() == '/' ? directory.path : directory.path + "/";
  alignas(dirent64) static thread_local char records[NamesBytes];
  for (;;) {
    const ssize_t bytes = System::readNames(fd.get(), records, sizeof records);
    if (bytes <= 0) return true;
    for (ssize_t at = 0; at < bytes;) {
      const auto* record = reinterpret_cast<const dirent64*>(records + at);
      at += record->d_reclen;
      if (isDotOrDotDotName(record->d_name)) continue;
      if (!take({fd.get(), prefix, record->d_name, record->d_type}, device)) return false;
    }
  }
}

bool FindWalk::take(const FindName& name, dev_t device) {
  if (name.name[0] == '.' && !options_.hidden) return true;
  if (name.prefix.size() + strlen(name.name) > LongestPath) return true;
  FindName known = name;
  if (known.type == DT_UNKNOWN) known.type = typeOf(name.directory, name.name);
  if (known.type == DT_UNKNOWN) return true;
  if (known.type == DT_DIR && options_.recurse) queue_.push_back({name.path(), device, false});
  return visitor_.found(known);
}
