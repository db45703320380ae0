#pragma once

#include "panels/model/panel.h"

// The file commands as the keys call them. Application thread; each re-reads both panels at its
// end.

namespace CopyFlag {
inline constexpr int Move = 1;
inline constexpr int BareName = 2;  // the destination starts with the bare name
}  // namespace CopyFlag

// `explicitDestination` null asks for one. The panel may be a temporary one of a search.
void copyCommand(Panel& source, int flags, const Westring* explicitDestination = nullptr);
void deleteCommand(Panel& panel);
void deleteByNameCommand(Panel& panel);
void makeDirectoryCommand(int side);

// What the copy dialog calls for its two side buttons: null until the tree window and the history
// window are connected. Each returns true and changes `path` when something was chosen.
struct DestinationPickers {
  bool (*fromTree)(Westring& path, int width) = nullptr;
  bool (*fromHistory)(Westring& path) = nullptr;
};
DestinationPickers& destinationPickers();
// The directory that the cursor of a tree panel is on; null until the tree is connected.
using TreeSelection = Westring (*)(const Panel& panel);
TreeSelection& treeSelection();
// Deletes the marked entries of an archive panel; null until an archive writer is connected.
using ArchiveDelete = void (*)(Panel& panel);
ArchiveDelete& archiveDelete();
