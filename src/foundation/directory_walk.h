#pragma once

#include <deque>
#include <string>

#include "foundation/directory_names.h"
#include "foundation/directory_stack.h"
#include "foundation/mount_id.h"
#include "foundation/place.h"

// One walk over a tree of directories, for everything that deletes, measures, changes, copies or
// looks through one. Members come in directory order, a directory's own right after it. Works
// however deep a tree is and beyond the longest path, with a bounded number of descriptors and
// without recursion. What is swapped for a link or moved away meanwhile is never followed.

enum class MountPoints {
  Enter,
  Pass,         // directories that lie on another mount than the one they are met in
  PassWithItem  // and the directory where the walk begins, when something is mounted there
};
enum class KernelFileSystems { Enter, Pass };

struct WalkOptions {
  FollowLinks links = FollowLinks::No;  // to directories; a circle isn't entered
  MountPoints mounts = MountPoints::Enter;
  KernelFileSystems kernelFileSystems = KernelFileSystems::Enter;  // below where the walk begins
  size_t mostOpen = DirectoryStack::MostOpen;
};

// A name in a directory. Its text lives for the length of the call that is given it.
struct WalkedMember {
  Place place;
  unsigned char type = DT_UNKNOWN;  // of itself; unknown only when it can't be looked at
  bool isDirectory = false;         // that is gone into, perhaps through a link
  size_t depth = 0;                 // of the directory that holds it; 0 where the walk began
};

// A directory that the walk went into. Its text lives for the length of the call that is given it.
struct WalkedDirectory {
  Place place;
  int fd = -1;
  FileId id;
  const DirectoryNames& names;
  size_t depth = 0;
};

enum class WalkFault {
  Opening,
  Listing,           // some names may have been read
  MountPoint,        // passed by; EBUSY
  KernelFileSystem,  // passed by; EBUSY
  Circle,            // the directory holds the one it was met in; ELOOP
  WayUp              // the directory above isn't found again: the walk can't go on
};

struct WalkError {
  WalkFault fault;
  int error;    // errno
  Place place;  // of the directory; nothing but the path holds after WayUp
};

enum class WalkStep { GoOn, Skip, Stop };
enum class WalkRetry {
  Skip,
  Again,
  Anyway,  // with the names that were read; after Listing only
  Stop
};

class DirectoryVisitor {
 public:
  virtual ~DirectoryVisitor() = default;

  // A directory was opened and listed. After anything but GoOn its members aren't visited, and
  // neither `leave` nor `abandon` is called for it.
  virtual WalkStep enter(const WalkedDirectory&) { return WalkStep::GoOn; }
  // Skip: a directory isn't gone into.
  virtual WalkStep member(const WalkedMember&) { return WalkStep::GoOn; }
  // All members are done; the directory and the one above are open.
  virtual WalkStep leave(const WalkedDirectory&) { return WalkStep::GoOn; }
  // The walk ends before all members are done; innermost first. Descriptors may be closed.
  virtual void abandon(const WalkedDirectory&) {}
  // A directory can't be gone into, or must not be.
  virtual WalkRetry failed(const WalkError&) { return WalkRetry::Skip; }
  // Asked before each member, and now and then while a long directory is listed.
  virtual bool interrupted() { return false; }
};

enum class [[nodiscard]] WalkEnd{
    Whole,
    Stopped,  // by the visitor
    Lost      // the way back up was lost; the visitor was told
};

class DirectoryWalk {
 public:
  explicit DirectoryWalk(DirectoryVisitor& visitor, const WalkOptions& options = {});

  // The directory of the place must stay open. A link counts as a directory only where links are
  // followed.
  WalkEnd run(const Place& directory);

 private:
  struct Level {
    DirectoryNames names;
    size_t next = 0;
    size_t pathLength = 0;  // of the directory's own path in path_
    OpenedId id;
  };

  WalkStep takeMember();
  WalkedMember memberAt(size_t index);
  WalkStep goInto(const Place& place, FollowLinks links);
  int open(const Place& place, FollowLinks links, Level& level, WalkFault& fault);
  int list(Level& level, WalkFault& fault);
  bool mustPass(const Level& level, WalkFault& fault) const;
  bool isCircle(const Level& level) const;
  WalkStep leave();
  WalkRetry tellLost(int error);
  void abandonAll();
  WalkedDirectory innermost() const;

  DirectoryVisitor& visitor_;
  const WalkOptions options_;
  Place top_;
  std::string path_;  // of the member under way; the paths of all levels are beginnings of it
  DirectoryStack stack_;
  std::deque<Level> levels_;
  OpenDirectory opening_;  // the directory that is about to become the innermost
  bool interrupted_ = false;
  bool lost_ = false;
};
