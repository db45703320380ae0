#pragma once

#include <sys/stat.h>

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
  void remove();

 private:
  Westring path_;
  Descriptor directory_;
};

// What a tool wrote under a path below a directory: looked at through no link, so never anywhere
// else.
struct FoundPlace {
  Descriptor parent;  // the directory that holds it
  std::string name;   // in there
  std::string path;   // below the directory where the look began
  struct stat info {};
};

enum class NameMatch {
  Exact,
  // Where the exact name isn't: the one name with as many bytes and the same ASCII characters.
  // Tools write names of other systems in characters of their own. Two such names are none.
  Likely,
};

// 0 or errno: ENOENT when there is nothing of that name, ELOOP or ENOTDIR behind a link.
int findWritten(int top, const std::string& path, NameMatch match, FoundPlace& place);
// The same for one regular file with no other name. ENOENT when it isn't there, EINVAL when it is
// something else.
int findWrittenFile(int top, const std::string& path, NameMatch match, FoundPlace& place);
