#pragma once

#include <dirent.h>
#include <sys/stat.h>

#include "foundation/entry.h"
#include "foundation/westring.h"

namespace FindFlag {
inline constexpr int ReadOnly = 1;
inline constexpr int System = 2;
inline constexpr int ShowHidden = 8;
inline constexpr int OwnRecord = 0x10000;  // each result is a heap record of its own
inline constexpr int DirectoriesOnly = 0x20000;
inline constexpr int All = ReadOnly | System | ShowHidden;
}  // namespace FindFlag

// Finds the names of one directory that match a pattern, "." and ".." among them. A symbolic link
// is described by its target with Attribute::Link set; one that can't be followed is left out. File
// operations use listNames instead, which sees every name.
class DirFinder {
 public:
  explicit DirFinder(const Westring& base);
  ~DirFinder();
  DirFinder(const DirFinder&) = delete;
  DirFinder& operator=(const DirFinder&) = delete;

  // 0, Status::NoMoreFiles, or errno. With OwnRecord the caller owns `result`, otherwise it stays
  // valid until the next call.
  int first(const Westring& pattern, int flags, entry*& result);
  int next(entry*& result);
  void close();
  // One path below the base, looked up exactly as it is named: never a pattern, whatever it holds.
  // Status::NoMoreFiles when it exists but the flags leave it out.
  int info(const Westring& path, int flags, entry*& result);

 private:
  bool accept(const char* name, entry*& result);
  bool deliver(const wchar_t* name, int length, const struct stat& info, uint16_t attributes,
               entry*& result);

  Westring base_;
  Westring pattern_;
  bool matchesAll_ = false;  // the pattern is "*"
  int flags_ = 0;
  DIR* open_ = nullptr;
  int status_ = 0;
  EntryPtr record_;
};
