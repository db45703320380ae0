#pragma once

#include <sys/stat.h>

#include "archive_actions/private_directory.h"
#include "editor/text/content_hash.h"
#include "foundation/dos_time.h"

// A member of an archive as a file of its own, in a private directory, and what it was when it was
// taken out. Application thread.
class MemberCopy {
 public:
  // Takes over a directory that holds the copy under `path`. 0 or errno: what it is can't be read.
  int adopt(PrivateDirectory&& directory, const Westring& path);

  const Westring& path() const { return path_; }
  const Westring& directory() const { return directory_.path(); }

  enum class State { Same, Changed, Unreadable };
  // Whether it is still what was taken out: by its date, in steps of two seconds, its size and its
  // content. `error`: why it is Unreadable.
  State compare(int& error) const;
  uint64_t size() const;  // by now, 0 when it can't be looked at

  // What it holds must not go into the archive any more: an archive that it is may be broken.
  void distrust() { trusted_ = false; }
  bool isTrusted() const { return trusted_; }
  // Leaves the copy on the disk, where no later clean-up takes it for a temporary one; its path.
  Westring keep();

 private:
  struct Facts {
    DosTime words;
    off_t size = 0;
    ContentHash::Value hash{};
  };
  static int read(const Westring& path, Facts& facts);

  PrivateDirectory directory_;
  Westring path_;
  Facts taken_;
  bool trusted_ = true;
};
