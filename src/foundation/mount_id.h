#pragma once

#include <cstdint>
#include <optional>

#include "foundation/place.h"

// What an open file is, and the mount that it was reached through: bind mounts of one file system
// are two. Without a mount where the kernel doesn't tell it.
struct OpenedId {
  FileId file;
  std::optional<uint64_t> mount;
};

int lookAtOpened(int fd, OpenedId& result);  // 0 or errno
// By mounts when both are known, otherwise by the devices.
bool onSameMount(const OpenedId& a, const OpenedId& b);

// Whether something is mounted at a directory: it lies on another mount than the directory above
// it. What can't be looked at is none.
bool isMountPoint(int directory);
bool isMountPoint(const Place& place);  // a link is none, whatever it leads to

// File systems that show the kernel and hold no files: processes, devices, control groups and the
// like.
bool isKernelFileSystem(int fd);
