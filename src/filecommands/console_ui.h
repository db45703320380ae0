#pragma once

#include "filecommands/copy_progress.h"
#include "filecommands/delete_window.h"
#include "fileops/operation.h"

// The operations on the screen. The repaint thread is at rest whenever a question is up. Windows
// close with the object, or earlier by `closeWindows`, in the reverse of their opening.
class ConsoleUi : public OperationUi {
 public:
  ConsoleUi() = default;
  ~ConsoleUi() override { closeWindows(); }

  // Before the first item; until then no progress window is shown.
  void watch(ProgressRecord& record, CClock& clock = systemClock());
  void closeWindows();

  int ask(const Westring& text, const Westring& caption, AlertButtons buttons,
          AlertColour colour) override;
  TreeAnswer askDeleteTree(const Westring& path) override;
  bool escapePressed() override;
  void itemStarted(TransferKind kind, const char* source, const char* target, int index,
                   int count) override;
  void itemsDone(int index, int count) override;
  void working() override;
  void deleting(const char* path, DeleteWindowUse window) override;
  void deletingDone() override;
  void directoryGone(const char* path) override;  // tells the trees of both panels

 private:
  std::unique_ptr<CopyProgress> progress_;
  DeleteWindow deleteWindow_;
};
