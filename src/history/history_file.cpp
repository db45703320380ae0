#include "history/history_file.h"

#include <sys/file.h>

#include <cerrno>

#include "foundation/data_paths.h"
#include "foundation/not_offered.h"
#include "foundation/place.h"
#include "foundation/regular_file.h"
#include "foundation/safe_file.h"
#include "foundation/threads.h"
#include "foundation/utf8.h"

namespace {

constexpr size_t LongestFile = size_t{256} << 20;
constexpr int LockTries = 50;
constexpr int LockPauseMs = 10;
constexpr char LineEnd[] = "\r\n";

// Never waits long: another program may have been stopped while it has the lock.
int lockFile(int file) {
  for (int i = 0; i < LockTries; ++i) {
    if (System::lock(file, LOCK_EX | LOCK_NB) == 0 || isNotOffered(errno)) return 0;
    if (errno != EWOULDBLOCK) return errno;
    sleepMs(LockPauseMs);
  }
  return EWOULDBLOCK;
}

// Whether a line added at the end would stand behind one without an end.
bool lacksLineEnd(int file, off_t size) {
  char last = '\n';
  return size > 0 && System::readAt(file, &last, 1, size - 1) == 1 && last != '\n';
}

}  // namespace

bool HistoryFile::isStillThere(const Descriptor& file) const {
  struct stat opened, named;
  return System::fstat(file.get(), &opened) == 0 &&
         System::stat(toUtf8(path_).data(), &named) == 0 && idOf(opened) == idOf(named);
}

// A file that was replaced while its lock was waited for is opened anew.
int HistoryFile::openLocked(int flags, Descriptor& file) const {
  int error = 0;
  for (int i = 0; i < LockTries; ++i) {
    file = Descriptor(
        System::open(toUtf8(path_).data(), flags | O_NONBLOCK | O_CLOEXEC, SafeFile::PrivateMode));
    if (!file.valid()) return errno;
    struct stat info;
    if (System::fstat(file.get(), &info) < 0) return errno;
    if (!S_ISREG(info.st_mode)) return EINVAL;
    error = lockFile(file.get());
    if (error != 0 || isStillThere(file)) break;
  }
  return error;
}

int HistoryFile::read(std::string& content) const {
  return readRegularFile(path_, content, LongestFile, Links::Follow);
}

int HistoryFile::append(const std::string& line) const {
  constexpr int flags = O_RDWR | O_CREAT | O_APPEND;
  Descriptor file;
  int error = openLocked(flags, file);
  if (error == ENOENT && makeUserDirectory() == 0) error = openLocked(flags, file);
  // A lock that can't be had costs a line at the worst, if the file is replaced just now.
  if (error != 0 && error != EWOULDBLOCK) return error;
  struct stat info;
  if (System::fstat(file.get(), &info) < 0) return errno;
  const std::string text = (lacksLineEnd(file.get(), info.st_size) ? LineEnd : "") + line + LineEnd;
  const ssize_t written = System::write(file.get(), text.data(), text.size());
  if (written == static_cast<ssize_t>(text.size())) return 0;
  error = written < 0 ? errno : ENOSPC;
  if (written > 0) System::truncate(file.get(), info.st_size);
  return error;
}

int HistoryFile::rewrite(const Maker& make) const {
  Descriptor file;
  if (const int error = openLocked(O_RDONLY, file)) return error;
  std::string content;
  if (const int error = read(content)) return error;
  const std::optional<std::string> made = make(content);
  if (!made) return 0;
  SafeFile target;
  int error = target.create(path_);
  if (error == 0) error = target.write(made->data(), made->size());
  return error ? error : target.commit();
}
