#pragma once

#include <string>

#include "foundation/system.h"
#include "foundation/westring.h"

// A directory for this user alone, "TD#%u.%d", that goes with everything in it at the end of the
// scope. What tools write goes into one, and lists for them. Application thread.
class PrivateDirectory {
 public:
  PrivateDirectory() = default;
  ~PrivateDirectory() { remove(); }
  PrivateDirectory(PrivateDirectory&& other) noexcept;
  PrivateDirectory& operator=(PrivateDirectory&& other) noexcept;
  PrivateDirectory(const PrivateDirectory&) = delete;
  PrivateDirectory& operator=(const PrivateDirectory&) = delete;

  // A new one in `where`. 0 or errno; what this was before is removed.
  int make(const Westring& where);
  bool exists() const { return directory_.valid(); }
  const Westring& path() const { return path_; }
  int fd() const { return directory_.get(); }
  // A file in it, for this user alone. 0 or errno; `path` is its whole path then.
  int writeFile(const char* name, const std::string& bytes, Westring& path) const;
  void keep();  // stays on the disk; this knows nothing of it any more
  // At once; what can't be removed is told.
  void remove();

 private:
  Westring path_;
  Descriptor directory_;
};
