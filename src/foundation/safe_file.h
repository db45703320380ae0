#pragma once

#include <string>

#include "foundation/system.h"
#include "foundation/westring.h"

// Replaces a file by a whole new one: what is written goes to a new file beside the target (exclusive,
// not through links, mode 0600 while in the making), and commit flushes it and renames it over the
// target. Without commit the destructor removes it and the target is untouched.
class SafeFile {
 public:
  SafeFile() = default;
  ~SafeFile();
  SafeFile(const SafeFile&) = delete;
  SafeFile& operator=(const SafeFile&) = delete;

  int create(const Westring& target);  // 0 or errno
  int descriptor() const { return fd_.get(); }
  int write(const void* bytes, size_t count);  // all of it, or errno
  int commit(mode_t mode);                     // fsync, chmod, close, rename; 0 or errno
  void discard();
  const std::string& temporaryPath() const { return temporary_; }

 private:
  Descriptor fd_;
  std::string target_;
  std::string temporary_;
};

// The recognisable name of a file in the making, beside `utf8Target`: ".td-" and eight hex digits.
std::string temporaryNameBeside(const char* utf8Target, unsigned attempt);
