#pragma once

#include <string>

#include "foundation/system.h"
#include "foundation/westring.h"

// Replaces a file by a whole new one: what is written goes to a new file beside the target
// (exclusive, not through links, mode 0600 while in the making), and commit flushes it and renames
// it over the target. Without commit the destructor removes it and the target is untouched.
class SafeFile {
 public:
  SafeFile() = default;
  ~SafeFile();
  SafeFile(const SafeFile&) = delete;
  SafeFile& operator=(const SafeFile&) = delete;

  int create(const Westring& target);  // 0 or errno
  int descriptor() const { return fd_.get(); }
  int write(const void* bytes, size_t count);  // all of it, or errno
  // fsync, chmod, close, rename; 0 or errno. After an error the new file is gone and the target is
  // as it was.
  int commit(mode_t mode);
  void discard();
  const std::string& temporaryPath() const { return temporary_; }  // "" when there is none

 private:
  int finish(mode_t mode);

  Descriptor fd_;
  std::string target_;
  std::string temporary_;
};

// The recognisable path of a file in the making, in the directory of `utf8Target`: ".td-" and eight
// hex digits. Each call gives another one.
std::string temporaryNameBeside(const char* utf8Target, unsigned attempt);
