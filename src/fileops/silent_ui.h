#pragma once

#include "fileops/operation_ui.h"

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
