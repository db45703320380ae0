#pragma once

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <sys/vfs.h>

#include <cstddef>

// The one seam between the program and the system's calls on files. Every call that looks at or
// changes the disk goes through these, so that a test can make the Nth call fail or count them. All
// return what the call returns and set errno; paths are UTF-8 bytes. EINTR is repeated inside. Any
// thread.
namespace System {

int open(const char* path, int flags, mode_t mode = 0);
int openAt(int directory, const char* name, int flags, mode_t mode = 0);
int close(int fd);
ssize_t read(int fd, void* buffer, size_t bytes);
ssize_t readAt(int fd, void* buffer, size_t bytes, off_t position);  // the file position stays
ssize_t write(int fd, const void* buffer, size_t bytes);
ssize_t copyRange(int from, int to, size_t bytes);  // copy_file_range at the current positions
off_t seek(int fd, off_t position, int whence);
int truncate(int fd, off_t length);
int reserve(int fd, off_t length);  // room on the disk for so many bytes; content and size stay
int sync(int fd);
// sync_file_range: begins to bring a part to the disk, or waits until it is there.
int writeBack(int fd, off_t from, off_t length, unsigned flags);
int lock(int fd, int operation);  // flock: advisory, gone when the file is closed
int stat(const char* path, struct ::stat* result);
int lstat(const char* path, struct ::stat* result);
int statAt(int directory, const char* name, struct ::stat* result, int flags);
int fstat(int fd, struct ::stat* result);
int accessAt(int directory, const char* name, int mode);  // for the effective user
// ENOSYS, or EPERM from a sandbox, where the kernel doesn't know it.
int statx(int directory, const char* name, int flags, unsigned mask, struct ::statx* result);
int unlink(const char* path);
int unlinkAt(int directory, const char* name, int flags);
int rmdir(const char* path);
int mkdir(const char* path, mode_t mode);
int mkdirAt(int directory, const char* name, mode_t mode);
int rename(const char* from, const char* to);
int renameNoReplace(const char* from, const char* to);  // EEXIST when `to` exists, also as a link
int renameAt(int fromDirectory, const char* from, int toDirectory, const char* to);
int renameAtNoReplace(int fromDirectory, const char* from, int toDirectory, const char* to);
// Both must exist; each gets the other's name in one step. EINVAL or ENOSYS where that isn't
// offered.
int renameExchange(int fromDirectory, const char* from, int toDirectory, const char* to);
// Another name for `from` itself, also when that is a symbolic link.
int linkAt(int fromDirectory, const char* from, int toDirectory, const char* to);
int symlink(const char* target, const char* path);
int symlinkAt(const char* target, int directory, const char* name);
ssize_t readlink(const char* path, char* buffer, size_t bytes);
ssize_t readlinkAt(int directory, const char* name, char* buffer, size_t bytes);
int mknod(const char* path, mode_t mode, dev_t device);
int mknodAt(int directory, const char* name, mode_t mode, dev_t device);
int chmod(const char* path, mode_t mode);
// The calls on attributes by descriptor work through one that was opened with O_PATH as well.
int fchmod(int fd, mode_t mode);
int fchown(int fd, uid_t owner, gid_t group);
int lchown(const char* path, uid_t owner, gid_t group);
int lchownAt(int directory, const char* name, uid_t owner, gid_t group);
ssize_t listAttributes(int fd, char* names, size_t bytes);  // extended attributes
ssize_t getAttribute(int fd, const char* name, void* value, size_t bytes);
int setAttribute(int fd, const char* name, const void* value, size_t bytes);
int removeAttribute(int fd, const char* name);
int futimens(int fd, const struct timespec times[2]);
int utimensAt(int directory, const char* path, const struct timespec times[2], int flags);
DIR* openDirectory(const char* path);
dirent* readDirectory(DIR* directory);  // null with errno 0 at the end
int closeDirectory(DIR* directory);
ssize_t readNames(int fd, void* records, size_t bytes);  // of a directory: dirent64; 0 at the end
int chdir(const char* path);
int statFs(const char* path, struct ::statfs* result);
int statFsFd(int fd, struct ::statfs* result);

// For tests: called before each call above with its name and path (or "" where it has none). A
// non-zero result makes the call fail with that errno; a close that fails so still closes. Null
// removes the hook. Set while no other thread works.
using Hook = int (*)(const char* call, const char* path, void* context);
void setHook(Hook hook, void* context);

// What one call works on. A path is relative to `directory`; where there is none (""), `directory`
// is the descriptor itself. The second pair is where a rename leads, or a copy between descriptors.
struct Call {
  const char* name = "";
  const char* path = "";
  int directory = AT_FDCWD;
  const char* target = "";
  int targetDirectory = AT_FDCWD;
};
// A hook that wants to know the place. It takes the other one's turn, and the other way round.
using PlaceHook = int (*)(const Call& call, void* context);
void setPlaceHook(PlaceHook hook, void* context);

// For tests: called after each read, fstat, statx, readNames and statFs that succeeded, with its
// name, the memory that it filled and what it returned; may change what was found, so that devices,
// mounts and file systems can be had without making any. Null removes it. Set while no other thread
// works.
using FoundHook = void (*)(const char* call, void* found, ssize_t result, void* context);
void setFoundHook(FoundHook hook, void* context);

}  // namespace System

// Opens /dev/null in place of each standard stream that the program was started without, so that
// libraries get no socket or file of theirs under such a number. Once, before any thread.
void fillStandardStreams();

// Closes a descriptor at the end of the scope unless it was released.
class Descriptor {
 public:
  explicit Descriptor(int fd = -1) : fd_(fd) {}
  ~Descriptor() { reset(); }
  Descriptor(Descriptor&& other) noexcept : fd_(other.release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    if (this != &other) {
      reset();
      fd_ = other.release();
    }
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int get() const { return fd_; }
  bool valid() const { return fd_ >= 0; }
  int release() {
    int fd = fd_;
    fd_ = -1;
    return fd;
  }
  int close();  // 0 or errno; a close error counts
  void reset() {
    if (fd_ >= 0) System::close(release());
  }

 private:
  int fd_;
};
