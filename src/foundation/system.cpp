#include "foundation/system.h"

#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/file.h>
#include <sys/syscall.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>

#include "foundation/not_offered.h"
#include "foundation/open_beneath.h"

namespace {

std::atomic<System::Hook> activeHook{nullptr};
std::atomic<System::PlaceHook> activePlaceHook{nullptr};
std::atomic<void*> hookContext{nullptr};
std::atomic<System::FoundHook> foundHook{nullptr};
std::atomic<void*> foundContext{nullptr};

constexpr const char* NoPath = "";
constexpr int FirstFreeDescriptor = STDERR_FILENO + 1;

// True when the hook wants this call to fail; errno is set then.
bool refused(const System::Call& call) {
  const System::Hook hook = activeHook.load(std::memory_order_acquire);
  const System::PlaceHook placeHook = activePlaceHook.load(std::memory_order_acquire);
  if (!hook && !placeHook) return false;
  void* const context = hookContext.load(std::memory_order_relaxed);
  const int error = hook ? hook(call.name, call.path, context) : placeHook(call, context);
  if (error == 0) return false;
  errno = error;
  return true;
}

template <class Make>
auto repeated(Make make) {
  for (;;) {
    const auto result = make();
    if (result != -1 || errno != EINTR) return result;
  }
}

// One call of the seam that gives -1 on failure.
template <class Make>
auto guarded(const System::Call& call, Make make) -> decltype(make()) {
  if (refused(call)) return -1;
  return repeated(make);
}

// Gives the result of a call on, after a test had its way with what was found.
template <class Result>
Result shown(const char* call, void* found, Result result) {
  const System::FoundHook hook = foundHook.load(std::memory_order_acquire);
  if (hook && result >= 0) hook(call, found, result, foundContext.load(std::memory_order_relaxed));
  return result;
}

// A descriptor that only names a file (O_PATH) is refused by many calls, but the file itself, and
// not whatever stands under its name by now, is reached through the process's own table.
template <class ByDescriptor, class ByPath>
auto throughAnyDescriptor(int fd, ByDescriptor byDescriptor, ByPath byPath) {
  const auto result = byDescriptor();
  if (result != -1 || errno != EBADF || fd < 0) return result;
  char path[32];
  snprintf(path, sizeof path, "/proc/self/fd/%d", fd);
  const auto reached = byPath(path);
  if (reached == -1 && errno == ENOENT) errno = ENOSYS;  // no such table here
  return reached;
}

// Newer kernels change what any descriptor names, in a third of the time. False where they don't.
bool chmodNamed(int fd, mode_t mode, int& result) {
  constexpr long FchmodAt2 = 452;  // the same on every machine; the C library has no name for it
  if (fd < 0) return false;
  result = static_cast<int>(syscall(FchmodAt2, fd, NoPath, mode, AT_EMPTY_PATH));
  return result == 0 || (errno != ENOSYS && errno != EPERM && errno != EINVAL);
}

// The C library looks an empty name up beside the descriptor, which costs the kernel a little more.
int statDescriptor(int fd, struct ::stat* result) {
#ifdef __x86_64__  // here both have one form of the structure
  return static_cast<int>(syscall(SYS_fstat, fd, result));
#else
  return ::fstat(fd, result);
#endif
}

// Whatever is printed would end up in a file that got the number of a closed standard stream.
int aboveStandardStreams(int fd, int flags) {
  if (fd < 0 || fd >= FirstFreeDescriptor) return fd;
  const int command = flags & O_CLOEXEC ? F_DUPFD_CLOEXEC : F_DUPFD;
  const int lifted = fcntl(fd, command, FirstFreeDescriptor);
  const int error = errno;
  ::close(fd);
  errno = error;
  return lifted;
}

}  // namespace

void fillStandardStreams() {
  int fd = 0;
  while (fd >= 0 && fd < FirstFreeDescriptor) fd = ::open("/dev/null", O_RDWR);
  if (fd >= FirstFreeDescriptor) ::close(fd);
}

namespace System {

int open(const char* path, int flags, mode_t mode) {
  const int fd = guarded({"open", path}, [&] { return ::open(path, flags, mode); });
  return aboveStandardStreams(fd, flags);
}

int openAt(int directory, const char* name, int flags, mode_t mode) {
  const int fd =
      guarded({"openAt", name, directory}, [&] { return ::openat(directory, name, flags, mode); });
  return aboveStandardStreams(fd, flags);
}

int openBeneath(int directory, const char* path, int flags) {
  struct open_how how {};
  how.flags = static_cast<unsigned>(flags);
  how.resolve = RESOLVE_BENEATH | RESOLVE_NO_SYMLINKS;
  const int fd = guarded({"openBeneath", path, directory}, [&] {
    return static_cast<int>(syscall(SYS_openat2, directory, path, &how, sizeof how));
  });
  return aboveStandardStreams(fd, flags);
}

int close(int fd) {
  if (refused({"close", NoPath, fd})) {
    const int error = errno;
    ::close(fd);
    errno = error;
    return -1;
  }
  // The descriptor is gone even when close was interrupted; closing once more could hit another
  // file.
  const int result = ::close(fd);
  return result == -1 && errno == EINTR ? 0 : result;
}

ssize_t read(int fd, void* buffer, size_t bytes) {
  return shown("read", buffer,
               guarded({"read", NoPath, fd}, [&] { return ::read(fd, buffer, bytes); }));
}

ssize_t readAt(int fd, void* buffer, size_t bytes, off_t position) {
  return guarded({"readAt", NoPath, fd}, [&] { return ::pread(fd, buffer, bytes, position); });
}

ssize_t write(int fd, const void* buffer, size_t bytes) {
  return guarded({"write", NoPath, fd}, [&] { return ::write(fd, buffer, bytes); });
}

ssize_t copyRange(int from, int to, size_t bytes) {
  return guarded({"copyRange", NoPath, from, NoPath, to},
                 [&] { return ::copy_file_range(from, nullptr, to, nullptr, bytes, 0); });
}

off_t seek(int fd, off_t position, int whence) {
  return guarded({"seek", NoPath, fd}, [&] { return ::lseek(fd, position, whence); });
}

int truncate(int fd, off_t length) {
  return guarded({"truncate", NoPath, fd}, [&] { return ::ftruncate(fd, length); });
}

int reserve(int fd, off_t length) {
  return guarded({"reserve", NoPath, fd},
                 [&] { return ::fallocate(fd, FALLOC_FL_KEEP_SIZE, 0, length); });
}

int sync(int fd) {
  return guarded({"sync", NoPath, fd}, [&] { return ::fsync(fd); });
}

int writeBack(int fd, off_t from, off_t length, unsigned flags) {
  return guarded({"writeBack", NoPath, fd},
                 [&] { return ::sync_file_range(fd, from, length, flags); });
}

int lock(int fd, int operation) {
  return guarded({"lock", NoPath, fd}, [&] { return ::flock(fd, operation); });
}

int stat(const char* path, struct ::stat* result) {
  return guarded({"stat", path}, [&] { return ::stat(path, result); });
}

int lstat(const char* path, struct ::stat* result) {
  return guarded({"lstat", path}, [&] { return ::lstat(path, result); });
}

int statAt(int directory, const char* name, struct ::stat* result, int flags) {
  return guarded({"statAt", name, directory},
                 [&] { return ::fstatat(directory, name, result, flags); });
}

int fstat(int fd, struct ::stat* result) {
  return shown("fstat", result,
               guarded({"fstat", NoPath, fd}, [&] { return statDescriptor(fd, result); }));
}

int accessAt(int directory, const char* name, int mode) {
  return guarded({"accessAt", name, directory},
                 [&] { return ::faccessat(directory, name, mode, AT_EACCESS); });
}

int statx(int directory, const char* name, int flags, unsigned mask, struct ::statx* result) {
  return shown("statx", result, guarded({"statx", name, directory}, [&] {
                 return ::statx(directory, name, flags, mask, result);
               }));
}

int unlink(const char* path) {
  return guarded({"unlink", path}, [&] { return ::unlink(path); });
}

int unlinkAt(int directory, const char* name, int flags) {
  return guarded({"unlinkAt", name, directory}, [&] { return ::unlinkat(directory, name, flags); });
}

int rmdir(const char* path) {
  return guarded({"rmdir", path}, [&] { return ::rmdir(path); });
}

int mkdir(const char* path, mode_t mode) {
  return guarded({"mkdir", path}, [&] { return ::mkdir(path, mode); });
}

int mkdirAt(int directory, const char* name, mode_t mode) {
  return guarded({"mkdirAt", name, directory}, [&] { return ::mkdirat(directory, name, mode); });
}

int rename(const char* from, const char* to) {
  return guarded({"rename", from, AT_FDCWD, to}, [&] { return ::rename(from, to); });
}

int renameNoReplace(const char* from, const char* to) {
  return renameAtNoReplace(AT_FDCWD, from, AT_FDCWD, to);
}

int renameAt(int fromDirectory, const char* from, int toDirectory, const char* to) {
  return guarded({"renameAt", from, fromDirectory, to, toDirectory},
                 [&] { return ::renameat(fromDirectory, from, toDirectory, to); });
}

int renameAtNoReplace(int fromDirectory, const char* from, int toDirectory, const char* to) {
  const int result = guarded({"renameNoReplace", from, fromDirectory, to, toDirectory}, [&] {
    return ::renameat2(fromDirectory, from, toDirectory, to, RENAME_NOREPLACE);
  });
  if (result == 0 || !isNotOffered(errno)) return result;
  struct ::stat existing;
  if (statAt(toDirectory, to, &existing, AT_SYMLINK_NOFOLLOW) == 0) {
    errno = EEXIST;
    return -1;
  }
  if (errno != ENOENT) return -1;
  return renameAt(fromDirectory, from, toDirectory, to);
}

int renameExchange(int fromDirectory, const char* from, int toDirectory, const char* to) {
  return guarded({"renameExchange", from, fromDirectory, to, toDirectory}, [&] {
    return ::renameat2(fromDirectory, from, toDirectory, to, RENAME_EXCHANGE);
  });
}

int linkAt(int fromDirectory, const char* from, int toDirectory, const char* to) {
  return guarded({"linkAt", from, fromDirectory, to, toDirectory},
                 [&] { return ::linkat(fromDirectory, from, toDirectory, to, 0); });
}

int symlink(const char* target, const char* path) {
  return guarded({"symlink", path}, [&] { return ::symlink(target, path); });
}

int symlinkAt(const char* target, int directory, const char* name) {
  return guarded({"symlinkAt", name, directory},
                 [&] { return ::symlinkat(target, directory, name); });
}

ssize_t readlink(const char* path, char* buffer, size_t bytes) {
  return guarded({"readlink", path}, [&] { return ::readlink(path, buffer, bytes); });
}

ssize_t readlinkAt(int directory, const char* name, char* buffer, size_t bytes) {
  return guarded({"readlinkAt", name, directory},
                 [&] { return ::readlinkat(directory, name, buffer, bytes); });
}

int mknod(const char* path, mode_t mode, dev_t device) {
  return guarded({"mknod", path}, [&] { return ::mknod(path, mode, device); });
}

int mknodAt(int directory, const char* name, mode_t mode, dev_t device) {
  return guarded({"mknodAt", name, directory},
                 [&] { return ::mknodat(directory, name, mode, device); });
}

int chmod(const char* path, mode_t mode) {
  return guarded({"chmod", path}, [&] { return ::chmod(path, mode); });
}

int fchmod(int fd, mode_t mode) {
  return guarded({"fchmod", NoPath, fd}, [&] {
    int result = 0;
    if (chmodNamed(fd, mode, result)) return result;
    return throughAnyDescriptor(
        fd, [&] { return ::fchmod(fd, mode); },
        [&](const char* path) { return ::chmod(path, mode); });
  });
}

int fchown(int fd, uid_t owner, gid_t group) {
  return guarded({"fchown", NoPath, fd},
                 [&] { return ::fchownat(fd, "", owner, group, AT_EMPTY_PATH); });
}

int lchown(const char* path, uid_t owner, gid_t group) {
  return guarded({"lchown", path}, [&] { return ::lchown(path, owner, group); });
}

int lchownAt(int directory, const char* name, uid_t owner, gid_t group) {
  return guarded({"lchownAt", name, directory},
                 [&] { return ::fchownat(directory, name, owner, group, AT_SYMLINK_NOFOLLOW); });
}

ssize_t listAttributes(int fd, char* names, size_t bytes) {
  return guarded({"listAttributes", NoPath, fd}, [&] {
    return throughAnyDescriptor(
        fd, [&] { return ::flistxattr(fd, names, bytes); },
        [&](const char* path) { return ::listxattr(path, names, bytes); });
  });
}

ssize_t getAttribute(int fd, const char* name, void* value, size_t bytes) {
  return guarded({"getAttribute", name, fd}, [&] {
    return throughAnyDescriptor(
        fd, [&] { return ::fgetxattr(fd, name, value, bytes); },
        [&](const char* path) { return ::getxattr(path, name, value, bytes); });
  });
}

int setAttribute(int fd, const char* name, const void* value, size_t bytes) {
  return guarded({"setAttribute", name, fd}, [&] {
    return throughAnyDescriptor(
        fd, [&] { return ::fsetxattr(fd, name, value, bytes, 0); },
        [&](const char* path) { return ::setxattr(path, name, value, bytes, 0); });
  });
}

int removeAttribute(int fd, const char* name) {
  return guarded({"removeAttribute", name, fd}, [&] {
    return throughAnyDescriptor(
        fd, [&] { return ::fremovexattr(fd, name); },
        [&](const char* path) { return ::removexattr(path, name); });
  });
}

int futimens(int fd, const struct timespec times[2]) {
  return guarded({"futimens", NoPath, fd}, [&] {
    const int result = ::futimens(fd, times);
    if (result == 0 || errno != EBADF) return result;
    return ::utimensat(fd, "", times, AT_EMPTY_PATH);
  });
}

int utimensAt(int directory, const char* path, const struct timespec times[2], int flags) {
  return guarded({"utimensAt", path, directory},
                 [&] { return ::utimensat(directory, path, times, flags); });
}

DIR* openDirectory(const char* path) {
  if (refused({"openDirectory", path})) return nullptr;
  for (;;) {
    DIR* directory = ::opendir(path);
    if (directory || errno != EINTR) return directory;
  }
}

dirent* readDirectory(DIR* directory) {
  if (refused({"readDirectory", NoPath, dirfd(directory)})) return nullptr;
  errno = 0;
  return ::readdir(directory);
}

int closeDirectory(DIR* directory) {
  if (refused({"closeDirectory", NoPath, dirfd(directory)})) {
    const int error = errno;
    ::closedir(directory);
    errno = error;
    return -1;
  }
  const int result = ::closedir(directory);
  return result == -1 && errno == EINTR ? 0 : result;
}

ssize_t readNames(int fd, void* records, size_t bytes) {
  return shown("readNames", records, guarded({"readNames", NoPath, fd}, [&] {
                 return ::getdents64(fd, records, bytes);
               }));
}

int chdir(const char* path) {
  return guarded({"chdir", path}, [&] { return ::chdir(path); });
}

int statFs(const char* path, struct ::statfs* result) {
  return shown("statFs", result, guarded({"statFs", path}, [&] { return ::statfs(path, result); }));
}

int statFsFd(int fd, struct ::statfs* result) {
  return guarded({"statFsFd", NoPath, fd}, [&] { return ::fstatfs(fd, result); });
}

void setHook(Hook hook, void* context) {
  hookContext.store(context, std::memory_order_relaxed);
  activePlaceHook.store(nullptr, std::memory_order_release);
  activeHook.store(hook, std::memory_order_release);
}

void setPlaceHook(PlaceHook hook, void* context) {
  hookContext.store(context, std::memory_order_relaxed);
  activeHook.store(nullptr, std::memory_order_release);
  activePlaceHook.store(hook, std::memory_order_release);
}

void setFoundHook(FoundHook hook, void* context) {
  foundContext.store(context, std::memory_order_relaxed);
  foundHook.store(hook, std::memory_order_release);
}

}  // namespace System

int Descriptor::close() {
  if (fd_ < 0) return 0;
  return System::close(release()) == 0 ? 0 : errno;
}
