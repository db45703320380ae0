#pragma once

#include <ctime>
#include <vector>

#include "archive/archive_formats.h"
#include "archive_actions/archive_tool.h"
#include "filecommands/chosen_items.h"
#include "fileops/operation.h"
#include "panels/model/panel.h"

// The items of a panel on their way into an archive. Application thread.
class Packing {
 public:
  // The archive file itself is left out of what is packed.
  Packing(Panel& source, const ChosenItems& items, ArchiveType type, const Westring& archive);

  bool isEmpty() const { return items_.empty(); }
  // Runs the archiver. Tags go, and what the archive doesn't hold afterwards gets them back. After
  // a move what it holds is removed, and one box tells that something stayed.
  void run(TransferKind kind);

 private:
  struct Item {
    entry* item;
    Westring name;  // below the directory that the tool works in
  };

  bool runTool();
  bool makeAnew(const ArchiveTool& tool, const std::vector<ToolOperand>& operands);
  void settle(bool removes);

  Panel& source_;
  const ArchiveType type_;
  const Westring archive_;
  const bool tagged_;
  Westring directory_;
  std::vector<Item> items_;
  struct timespec start_ {};
};
