#pragma once

#include "foundation/path_info.h"

// The working directory is another one for as long as this lives.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const Westring& path)
      : before_(currentDir()), error_(changeDir(path)) {}
  ~WorkingDirectory() { static_cast<void>(changeDir(before_)); }
  WorkingDirectory(const WorkingDirectory&) = delete;
  WorkingDirectory& operator=(const WorkingDirectory&) = delete;

  int error() const { return error_; }  // 0 or errno; then it is still the one before

 private:
  const Westring before_;
  const int error_;
};
