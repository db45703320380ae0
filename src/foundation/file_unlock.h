#pragma once

#include <sys/types.h>

#include "foundation/westring.h"

// Makes a file writable for its owner for a while; the destructor restores the mode. Another file
// that took the name meanwhile is left alone.
class FileUnlock {
 public:
  FileUnlock() = default;
  ~FileUnlock() { relock(); }
  FileUnlock(const FileUnlock&) = delete;
  FileUnlock& operator=(const FileUnlock&) = delete;

  // EACCES when it already was writable for its owner: the refusal had another reason.
  int unlock(const Westring& path);
  int relock();  // 0 or errno
  bool locked() const { return locked_; }

 private:
  Westring name_;
  bool locked_ = false;
  mode_t mode_ = 0;
  dev_t device_ = 0;
  ino_t inode_ = 0;
};
