#pragma once

#include <string>
#include <vector>

#include "fileops/operation.h"
#include "foundation/directory_walk.h"

// Deletes a directory with everything in it, depth first, in directory order, links themselves and
// never what they lead to. What is mounted in it is told and stays, with all above it. With another
// pattern than "*" only files that match go, and directories that are empty then.
class DeleteTree : private DirectoryVisitor {
 public:
  DeleteTree(RunningOperation& operation, const wchar_t* pattern);

  // Failures are told on the way and passed over. Done, LeftInPlace when something is still there,
  // Failed when the directory itself can't be read or the way back was lost, Cancelled.
  Outcome run(const Place& directory);

 private:
  // A directory whose members are under way.
  struct Level {
    bool left = false;  // something in it is still there
    bool described = false;
    bool descriptionsGoLast = false;  // with all that they describe
    std::vector<std::string> gone;    // names whose lines go, while the directory is described
  };

  WalkStep enter(const WalkedDirectory& directory) override;
  WalkStep member(const WalkedMember& member) override;
  WalkStep leave(const WalkedDirectory& directory) override;
  void abandon(const WalkedDirectory& directory) override;
  WalkRetry failed(const WalkError& error) override;
  bool interrupted() override { return operation_.cancelled(); }

  WalkStep note(const char* name, Outcome outcome);
  WalkRetry tell(const WalkError& error);
  bool fits(const char* name) const;
  Outcome remove(const WalkedDirectory& directory);
  void settleDescriptions(const WalkedDirectory& directory);

  RunningOperation& operation_;
  const Westring pattern_;
  const bool everything_;
  std::vector<Level> levels_;
  Outcome outcome_ = Outcome::Done;  // of the directory where the walk begins
};

// Removes what a failed operation made, with everything in it; asks and tells nothing.
void removeTreeQuietly(const Place& directory);
