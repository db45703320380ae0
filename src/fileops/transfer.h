#pragma once

#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "fileops/copy_engine.h"
#include "fileops/operation.h"
#include "fileops/overwrite_question.h"
#include "foundation/directory_names.h"
#include "foundation/directory_stack.h"

// Copies or moves items, one after the other, with everything in them, asking what has to be asked.
// Paths are absolute and taken as they are; none may be longer than LongestPath.
class Transfer {
 public:
  Transfer(RunningOperation& operation, TransferKind kind);
  ~Transfer();
  Transfer(const Transfer&) = delete;
  Transfer& operator=(const Transfer&) = delete;

  // `index` of `count` items, from 1. All items of one command go through one Transfer, which knows
  // what it has made: that is never overwritten unasked. After Done nothing of a moved source is
  // left; otherwise what is left of it is whole.
  Outcome run(const std::string& source, const std::string& target, int index, int count);

 private:
  // How an item, or the members of a directory, go over.
  enum class Method {
    Copy,
    Rename,
    MoveByCopy,  // to another device, each file by itself
    MoveWhole,   // the same into the place of a file: the source stays until all of it is over
    ClearSource  // and then goes
  };
  static bool keepsSource(Method method) {
    return method == Method::Copy || method == Method::MoveWhole;
  }

  struct Item {
    Place source;
    Place target;
    DescriptionFile* sourceDescriptions = nullptr;
    DescriptionFile* targetDescriptions = nullptr;
    Method method = Method::Copy;
    unsigned char type = DT_UNKNOWN;
    Making making = Making::Beside;
    bool chosen = false;          // by the user, and not found in a directory
    bool inOwnDirectory = false;  // the target's directory was made by this command
  };

  // What was allowed so far for one item, and by what.
  enum class Allowed { No, ByDate, ByAnswer };
  struct Attempt {
    Allowed allowed = Allowed::No;
    bool openAnyway = false;
    bool inPlace = false;
    bool insisted = false;              // on a target that its directory protects
    std::optional<struct stat> target;  // of the last look, a link itself; empty when there is none
    bool targetIsDirectory = false;     // also through a link
    bool asked = false;                 // about this target
  };

  // What an attempt leads to: the item's outcome, one more attempt, or a directory's members first.
  struct Verdict {
    enum class Kind { Decided, Again, Entered };
    Kind kind;
    Outcome outcome = Outcome::Done;
  };
  static Verdict decided(Outcome outcome) { return {Verdict::Kind::Decided, outcome}; }
  static Verdict again() { return {Verdict::Kind::Again}; }
  static Verdict entered() { return {Verdict::Kind::Entered}; }

  // A directory whose members are under way.
  struct Level;

  Verdict begin(const Item& item, int index, int count);
  Verdict beginMember();
  Item memberItem(Level& level, size_t index);
  bool isKeptBack(Level& level, size_t index);
  TransferKind kindOf(const Item& item) const;

  // copy_item.cpp
  Verdict copyItem(const Item& item);
  CopyResult attemptCopy(const Item& item, Attempt& attempt);
  CopyResult attemptFile(const Item& item, const Attempt& attempt, const struct stat& source);
  CopyRequest requestFor(const Item& item, const Attempt& attempt) const;
  static int lookAtSource(const Item& item, struct stat& info);
  static int lookAtTarget(const Item& item, Attempt& attempt);
  MadeBy makerOf(const Item& item, const Attempt& attempt) const;
  OverwriteDecision askOnce(const Item& item, Attempt& attempt);
  void noteMade(const Item& item);
  Verdict settleCopy(const Item& item, Attempt& attempt, CopyResult result);
  Verdict settleExisting(const Item& item, Attempt& attempt, CopyStatus status);
  Verdict settleOpenFile(const Item& item, Attempt& attempt);
  Verdict settleFailure(const Item& item, CopyResult result);
  Verdict settleRefused(const Item& item, Attempt& attempt);
  Verdict tellKept(const Item& item);
  Verdict refuseItself(const Item& item);
  static void takeDescription(const Item& item);
  static bool tookPlaceOfOld(const Attempt& attempt);
  static void dropOldDescription(const Item& item);

  // move_item.cpp
  Verdict moveItem(const Item& item);
  Verdict settleRename(const Item& item, Attempt& attempt, int error);
  Verdict moveByCopy(const Item& item);
  Verdict settleOccupied(const Item& item, Attempt& attempt);
  Verdict mergeInto(const Item& item, const Attempt& attempt, const struct stat& source);
  Verdict decideReplacing(const Item& item, Attempt& attempt);
  Verdict tellSame(const Item& item);

  // enter_directory.cpp
  CopyResult enterDirectory(const Item& item, const Attempt& attempt, const struct stat& source);
  CopyResult openSource(const Item& item, Level& level);
  CopyResult mergeOrMake(const Item& item, const Attempt& attempt, Level& level);
  CopyResult makeTarget(const Item& item, const Attempt& attempt, Level& level);
  CopyResult openTarget(const Item& item, Level& level);
  bool leadsIntoItself(const Item& item, FileId source);
  CopyResult refuseIntoItself(const Item& item);
  void openDescriptions(Level& level);
  void push(const Item& item, std::unique_ptr<Level> level);
  void pop();

  // clear_source.cpp
  void noteCopied(const struct stat& source);
  Verdict clearItem(const Item& item);
  Verdict attemptClear(const Item& item);

  // leave_directory.cpp
  Verdict leaveDirectory();
  Outcome finishDirectory(Level& level);
  void reopenParent();
  Outcome nameDirectory(Level& level);
  int tryName(const Level& level) const;
  void removeUnnamed(const Level& level);
  int dressDirectory(const Level& level) const;
  Outcome dressOrTell(const Level& level);
  void settleDescriptions(Level& level);
  void carryOrphanLines(Level& level);
  Outcome removeSource(const Level& level);
  enum class SourceIs { There, Gone };
  static void describeDirectory(const Level& level, SourceIs source, const Item& self);
  Item selfItem(const Level& level) const;
  std::string realTarget() const;
  void unwind();

  RunningOperation& operation_;
  const TransferKind kind_;
  std::vector<std::unique_ptr<Level>> levels_;
  DirectoryStack sources_;  // of the levels
  DirectoryStack targets_;
  OpenDirectory openingSource_;  // what is about to become the innermost level
  Descriptor openingTarget_;
  std::vector<FileId> aboveTarget_;  // of the item's target
  bool toldKept_ = false;            // that a device keeps no file for its source
  // By the whole command: files and directories in directories that were there before.
  std::unordered_set<FileId, FileIdHash> made_;
  // By MoveWhole, as each thing was before it was copied.
  std::unordered_map<FileId, struct stat, FileIdHash> copied_;
  std::string source_;  // of the member under way; the paths of all levels are beginnings of it
  std::string target_;
};
