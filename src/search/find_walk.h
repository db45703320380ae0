#pragma once

#include <sys/types.h>

#include <deque>
#include <string>
#include <vector>

// The walk of a search: breadth first, each directory in its own order. Links are never walked,
// kernel file systems that are met on the way neither; what can't be read, and paths that are too
// long, are passed over in silence. Any thread.

// A name as the disk has it. Its text lives for the length of the call that is given it.
struct FindName {
  int directory;              // held open
  const std::string& prefix;  // the path of the directory, ending in '/'
  const char* name;
  unsigned char type;  // a DT_ value, of the name itself; never unknown

  std::string path() const { return prefix + name; }
};

class FindVisitor {
 public:
  virtual ~FindVisitor() = default;
  // A directory is about to be listed. False ends the walk, as below.
  virtual bool enter(const std::string& path) = 0;
  virtual bool found(const FindName& name) = 0;
};

struct FindWalkOptions {
  bool recurse = true;
  bool hidden = true;  // names that begin with a dot take part
};

class FindWalk {
 public:
  FindWalk(FindVisitor& visitor, const FindWalkOptions& options)
      : visitor_(visitor), options_(options) {}

  // False when the visitor ended it.
  bool run(const std::vector<std::string>& starts);

 private:
  struct Waiting {
    std::string path;
    dev_t deviceAbove = 0;
    bool isStart = false;
  };

  bool list(const Waiting& directory);
  bool take(const FindName& name, dev_t device);
  static int open(const Waiting& directory, dev_t& device);

  FindVisitor& visitor_;
  const FindWalkOptions options_;
  std::deque<Waiting> queue_;
};
