#pragma once

#include <cstddef>
#include <deque>
#include <string>

#include "foundation/place.h"
#include "foundation/system.h"

// Opens a directory to work in; one that may be entered but not read does as well. 0 or errno.
int openToWorkIn(int directory, const char* name, Descriptor& result);

// How a directory above is found again: by ".." alone, or also by the names that led down, where a
// link may have been among them.
enum class WayUp { ByParent, AlsoByNames };

// Directories one in the other, outermost first, of which only the innermost stay open: a tree can
// be deeper than a process may have descriptors, and its paths longer than the system takes. One
// that was closed is opened again only when it is still the one that was left.
class DirectoryStack {
 public:
  static constexpr size_t MostOpen = 64;

  explicit DirectoryStack(size_t mostOpen = MostOpen) : mostOpen_(mostOpen) {}

  // The directory that stands at `place`, in the innermost so far, becomes the innermost. The text
  // of the place is copied; the directory of the outermost place must stay open.
  void push(Descriptor directory, FileId id, const Place& place, WayUp wayUp);
  void pop() { levels_.pop_back(); }
  // Opens the one above the innermost, if it was closed. 0 or errno; ESTALE when the way leads to
  // another directory now.
  int reopenParent();

  bool empty() const { return levels_.empty(); }
  size_t size() const { return levels_.size(); }
  int fd() const { return levels_.back().directory.get(); }  // of the innermost
  int parentFd() const;                                      // where the innermost stands
  bool holds(FileId id) const;

 private:
  struct Level {
    Descriptor directory;
    FileId id;
    std::string name;  // in the directory above
    WayUp wayUp;
  };

  int openByParent(Descriptor& result) const;
  int openByNames(size_t index, Descriptor& result) const;

  const size_t mostOpen_;
  int outside_ = -1;  // where the outermost stands
  std::deque<Level> levels_;
};
