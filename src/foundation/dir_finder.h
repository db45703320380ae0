#pragma once

#include <dirent.h>

#include "foundation/entry.h"
#include "foundation/westring.h"

namespace FindFlag {
inline constexpr int ReadOnly = 1;
inline constexpr int System = 2;
inline constexpr int ShowHidden = 8;
inline constexpr int OwnRecord = 0x10000;       // each result is a heap record of its own
inline constexpr int DirectoriesOnly = 0x20000;
inline constexpr int All = ReadOnly | System | ShowHidden;
}  // namespace FindFlag

// Finds the names of one directory that match a pattern. A symbolic link is described by its target
// with Attribute::Link set; one that can't be followed is left out. File operations use listNames
// instead, which sees every name.
class DirFinder {
 public:
  explicit DirFinder(const Westring& base);
  ~DirFinder();
  DirFinder(const DirFinder&) = delete;
  DirFinder& operator=(const DirFinder&) = delete;

  // 0, Status::NoMoreFiles, or errno. With OwnRecord the caller owns `result`, otherwise it stays valid
  // until the next call.
  int first(const Westring& pattern, int flags, entry*& result);
  int next(entry*& result);
  void close();
  int info(const Westring& path, int flags, entry*& result);  // first and close in one

 private:
  bool accept(const char* name, entry*& result);

  Westring base_;
  Westring directory_;
  Westring pattern_;
  int flags_ = 0;
  DIR* open_ = nullptr;
  int status_ = 0;
  EntryPtr record_;
};
