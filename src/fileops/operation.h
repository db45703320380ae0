#pragma once

#include <memory>
#include <string>

#include "fileops/description_file.h"
#include "fileops/moved_links.h"
#include "fileops/progress.h"
#include "foundation/answer.h"
#include "foundation/westring.h"

// What one step of an operation came to.
enum class [[nodiscard]] Outcome{
    Done,
    LeftInPlace,  // skipped, or something inside it was: the source stays, the entry stays tagged
    Failed,       // an error the user was told of; as LeftInPlace for what follows
    Cancelled     // the whole command ends
};

enum class OverwriteMode { Ask, All, None, AllOlder };
enum class StandingAnswer { Ask, All, None };

// The answers that hold for the rest of one command.
struct OperationAnswers {
  OverwriteMode overwrite = OverwriteMode::Ask;
  StandingAnswer readOnly = StandingAnswer::Ask;
  StandingAnswer openFile = StandingAnswer::Ask;
  bool mergeAll = false;
  bool deleteTree = false;  // "All" at the tree question
};

// Files that changed while they were copied.
struct ChangedSources {
  std::string first;  // its path
  int count = 0;

  void add(const char* path) {
    if (count++ == 0) first = path;
  }
};

enum class TransferKind { Copy, Move };
enum class TreeAnswer { No, Yes, All };
// Whether a delete step may open the small window, or only use one that is already open.
enum class DeleteWindowUse { Open, IfOpen };

// Everything an operation on files asks and shows. The engines know nothing else of the screen, so
// they run without one. Whoever implements `ask` makes sure that nothing else draws while a
// question is up. Paths are UTF-8 bytes as the disk has them. Application thread.
class OperationUi {
 public:
  virtual ~OperationUi() = default;

  // One message box; returns an Answer.
  virtual int ask(const Westring& text, const Westring& caption, AlertButtons buttons,
                  AlertColour colour) = 0;
  // Whether a directory that isn't empty may go with all that is in it.
  virtual TreeAnswer askDeleteTree(const Westring& path) = 0;
  // Takes one waiting key away; true when it was Esc. Must be cheap when nothing waits.
  virtual bool escapePressed() = 0;

  // A file or directory is being taken in hand; `count` above 1 shows the place of the item.
  virtual void itemStarted(TransferKind kind, const char* source, const char* target, int index,
                           int count) = 0;
  // Renames move no bytes: the bar shows how many items are done.
  virtual void itemsDone(int index, int count) = 0;
  // Called at least 20 times a second while bytes move.
  virtual void working() = 0;

  virtual void deleting(const char* path, DeleteWindowUse window) = 0;
  virtual void deletingDone() = 0;
  // A directory is gone, or was found not to be there; whoever keeps a tree of directories drops
  // it.
  virtual void directoryGone(const char* path) = 0;
};

// Asks nobody: whatever goes wrong is passed over.
class SilentUi : public OperationUi {
 public:
  int ask(const Westring&, const Westring&, AlertButtons, AlertColour) override {
    return Answer::Skip;
  }
  TreeAnswer askDeleteTree(const Westring&) override { return TreeAnswer::No; }
  bool escapePressed() override { return false; }
  void itemStarted(TransferKind, const char*, const char*, int, int) override {}
  void itemsDone(int, int) override {}
  void working() override {}
  void deleting(const char*, DeleteWindowUse) override {}
  void deletingDone() override {}
  void directoryGone(const char*) override {}
};

// One file command under way: what its steps share. Lives on the application thread for as long as
// the command; the progress record is also read by the thread that repaints it.
class RunningOperation {
 public:
  static constexpr size_t BufferSize = 256 * 1024;

  // `turnedOff`: bits of ConfirmationOff, the questions that the user has turned off.
  explicit RunningOperation(OperationUi& shownBy, int turnedOff = 0)
      : ui(shownBy), confirmationsOff(turnedOff) {}
  RunningOperation(const RunningOperation&) = delete;
  RunningOperation& operator=(const RunningOperation&) = delete;

  // Break was pressed, or Esc waits in the queue. Once true it stays true.
  bool cancelled();
  char* buffer();  // BufferSize bytes

  OperationUi& ui;
  const int confirmationsOff;
  OperationAnswers answers;
  ProgressRecord progress;
  DescriptionCache descriptions;
  MovedLinks movedLinks;
  ChangedSources changedSources;
  bool interruptible = true;  // what cleans up goes on to its end
  bool foldNames = false;     // names of plain files copied out of directories become lower case

 private:
  bool cancelled_ = false;
  std::unique_ptr<char[]> buffer_;
};
