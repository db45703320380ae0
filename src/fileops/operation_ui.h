#pragma once

#include "foundation/westring.h"
#include "ui/alert.h"

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
