#pragma once

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>

#include "tree/tree.h"

// What has been counted so far; read by whoever shows it, any thread.
struct TotalCounters {
  std::atomic<int64_t> directories{0};
  std::atomic<int64_t> files{0};
  std::atomic<int64_t> bytes{0};
};

// Who looks on while a directory is counted.
class TotalWatcher {
 public:
  virtual ~TotalWatcher() = default;
  virtual void entered(const char* /*path*/) {}  // UTF-8, absolute
  // Asked before each name; true ends the count.
  virtual bool interrupted() { return false; }
};

// Adds up the bytes of all plain files in a directory and below it. A link counts as a file without
// bytes and is never followed; file systems that show the kernel aren't gone into, and what can't
// be read is empty. The tree, if it has a root, learns of the directories on the way and of the
// bytes of each. Nothing when it was interrupted.
std::optional<int64_t> countDirectory(CTree& tree, const std::string& path, TotalCounters& counters,
                                      TotalWatcher& watcher);
