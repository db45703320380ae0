#pragma once

#include <vector>

#include "archive/archive_entry_store.h"
#include "archive_actions/archive_tool.h"
#include "filecommands/chosen_items.h"

// An entry of a panel that shows an archive, and what a tool knows it as.
struct ChosenMember {
  entry* item;         // of the panel
  Westring innerPath;  // as it is shown
  // Where the archive stores names of several forms for one directory, each of them.
  std::vector<ToolOperand> operands;
  uint64_t size = 0;  // with all that lies below, bytes
};

std::vector<ChosenMember> chosenMembers(const Panel& panel, const ArchiveEntryStore& archive,
                                        const ChosenItems& items);
// How a tool knows the file of a record, which is listed under the path.
ToolOperand fileOperand(const Westring& innerPath, const ArchiveRecord& record);
std::vector<ToolOperand> operandsOf(const std::vector<ChosenMember>& members);
