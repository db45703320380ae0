#pragma once

#include <sys/types.h>

#include <string>

#include "foundation/westring.h"

// What the system tells about the volume that holds a directory; empty where it doesn't tell.
struct VolumeFacts {
  Westring label;
  Westring fileSystem;  // such as "ext4"
  Westring serial;      // hexadecimal digits
};

VolumeFacts volumeFacts(const Westring& directory);

// The pieces, for tests.
struct MountLine {
  std::string fileSystem;
  std::string source;  // the device's path, or any other word
};
// The line of a mount number in the text of a mount table; empty when it isn't there.
MountLine findMount(const std::string& table, int mountId);
// The name in `directory` that leads to the device: labels and volume ids are links of such names.
std::string nameOfDevice(const char* directory, dev_t device);
// The four or eight bytes of a short volume id as hexadecimal digits; empty for a long one.
Westring serialOfId(const std::string& id);
