#pragma once

#include <memory>
#include <string>
#include <vector>

#include "fileops/operation.h"
#include "foundation/directory_names.h"

// Deletes a directory with everything in it, depth first, in directory order, links themselves and
// never what they lead to. Works however deep a tree is and beyond the longest path, with a bounded
// number of open directories. With another pattern than "*" only files that match go, and
// directories that are empty then.
class DeleteTree {
 public:
  DeleteTree(RunningOperation& operation, const wchar_t* pattern);
  ~DeleteTree();
  DeleteTree(const DeleteTree&) = delete;
  DeleteTree& operator=(const DeleteTree&) = delete;

  // Failures are told on the way and passed over. Done, LeftInPlace when something is still there,
  // Cancelled.
  Outcome run(const Place& directory);

 private:
  struct Level;

  Outcome enter(const Place& place, bool& entered);
  Outcome deleteMember(Level& level, bool& entered);
  Outcome leave();
  bool isDirectory(const Level& level, size_t index) const;
  bool fits(const char* name) const;
  Place memberPlace(const Level& level, size_t index);
  bool reopenParent(const Level& child);
  void settleDescriptions(Level& level, Outcome outcome);

  RunningOperation& operation_;
  const Westring pattern_;
  const bool everything_;
  Place top_;
  std::string path_;  // of the member under way; the paths of all levels are beginnings of it
  std::vector<std::unique_ptr<Level>> levels_;
};

// Removes what a failed operation made, with everything in it; asks and tells nothing.
void removeTreeQuietly(const Place& directory);
