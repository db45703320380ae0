#pragma once

#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>

#include <cstring>
#include <string>

#include "foundation/system.h"

// As long as it lives, a directory looks as if something were mounted there, to all that ask for
// the mount of a file.
class InjectedMount {
 public:
  explicit InjectedMount(const std::string& path) {
    struct stat info {};
    if (::stat(path.c_str(), &info) == 0) inode_ = info.st_ino;
    System::setFoundHook(onFound, this);
  }
  ~InjectedMount() { System::setFoundHook(nullptr, nullptr); }
  InjectedMount(const InjectedMount&) = delete;
  InjectedMount& operator=(const InjectedMount&) = delete;

 private:
  static void onFound(const char* call, void* result, ssize_t, void* context) {
    constexpr __u64 AnotherMount = 1ULL << 40;
    if (strcmp(call, "statx") != 0) return;
    auto* found = static_cast<struct ::statx*>(result);
    if (found->stx_ino != static_cast<InjectedMount*>(context)->inode_) return;
    found->stx_mask |= STATX_MNT_ID;
    found->stx_mnt_id += AnotherMount;
  }

  ino_t inode_ = 0;
};

// What this thread, and those that it starts from now on, mount is seen by nobody else.
inline bool hasOwnMounts() {
  return unshare(CLONE_NEWNS) == 0 &&
         mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

// A file system in memory on a directory, for as long as this lives.
class MountedMemory {
 public:
  // `options` as of the command that mounts. Not valid where the machine doesn't permit it.
  MountedMemory(const std::string& path, const char* options)
      : path_(path),
        valid_(hasOwnMounts() &&
               mount("tmpfs", path.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, options) == 0) {}
  ~MountedMemory() {
    if (valid_) umount2(path_.c_str(), MNT_DETACH);
  }
  MountedMemory(const MountedMemory&) = delete;
  MountedMemory& operator=(const MountedMemory&) = delete;

  bool valid() const { return valid_; }

 private:
  std::string path_;
  bool valid_;
};

// Mounts one directory over another, seen by this process alone; for a child process that ends
// soon. False where the machine doesn't permit it.
inline bool bindMount(const std::string& from, const std::string& to) {
  return hasOwnMounts() && mount(from.c_str(), to.c_str(), nullptr, MS_BIND, nullptr) == 0;
}
