#include "foundation/mount_id.h"

#include <linux/magic.h>
#include <sys/sysmacros.h>

#include <algorithm>
#include <cerrno>

#include "foundation/system.h"

namespace {

// Those that the kernel's header leaves out.
constexpr unsigned long ConfigFs = 0x62656570;
constexpr unsigned long FuseControl = 0x65735543;
constexpr unsigned long MessageQueues = 0x19800202;
constexpr unsigned long RpcPipes = 0x67596969;
constexpr unsigned long NfsServer = 0x6E667364;

constexpr unsigned long KernelFileSystemTypes[] = {
    PROC_SUPER_MAGIC, SYSFS_MAGIC,    CGROUP_SUPER_MAGIC, CGROUP2_SUPER_MAGIC,
    DEBUGFS_MAGIC,    TRACEFS_MAGIC,  SECURITYFS_MAGIC,   BPF_FS_MAGIC,
    PSTOREFS_MAGIC,   EFIVARFS_MAGIC, DEVPTS_SUPER_MAGIC, SELINUX_MAGIC,
    SMACK_MAGIC,      BINFMTFS_MAGIC, NSFS_MAGIC,         RDTGROUP_SUPER_MAGIC,
    ConfigFs,         FuseControl,    MessageQueues,      RpcPipes,
    NfsServer};

bool isUnknownCall(int error) {
  return error == ENOSYS || error == EPERM || error == EINVAL;
}

int lookByStat(int directory, const char* name, int flags, OpenedId& result) {
  struct stat info;
  if (System::statAt(directory, name, &info, flags) < 0) return errno;
  result = {idOf(info), std::nullopt};
  return 0;
}

int look(int directory, const char* name, int flags, OpenedId& result) {
  struct statx found;
  if (System::statx(directory, name, flags, STATX_INO | STATX_MNT_ID, &found) < 0) {
    return isUnknownCall(errno) ? lookByStat(directory, name, flags, result) : errno;
  }
  result.file = {makedev(found.stx_dev_major, found.stx_dev_minor), found.stx_ino};
  result.mount.reset();
  if (found.stx_mask & STATX_MNT_ID) result.mount = found.stx_mnt_id;
  return 0;
}

}  // namespace

int lookAtOpened(int fd, OpenedId& result) {
  return look(fd, "", AT_EMPTY_PATH, result);
}

bool onSameMount(const OpenedId& a, const OpenedId& b) {
  if (a.mount && b.mount) return *a.mount == *b.mount;
  return a.file.device == b.file.device;
}

bool isMountPoint(int directory) {
  OpenedId self;
  OpenedId above;
  return lookAtOpened(directory, self) == 0 && look(directory, "..", 0, above) == 0 &&
         !onSameMount(self, above);
}

bool isMountPoint(const Place& place) {
  const Descriptor directory(
      System::openAt(place.directory, place.name, O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  return directory.valid() && isMountPoint(directory.get());
}

bool isKernelFileSystem(int fd) {
  struct statfs info;
  if (System::statFsFd(fd, &info) < 0) return false;
  const auto type = static_cast<unsigned long>(info.f_type);
  return std::find(std::begin(KernelFileSystemTypes), std::end(KernelFileSystemTypes), type) !=
         std::end(KernelFileSystemTypes);
}
