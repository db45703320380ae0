#include "filecommands/commands.h"

// What later modules connect to the file commands.

DestinationPickers& destinationPickers() {
  static DestinationPickers pickers;
  return pickers;
}

TreeSelection& treeSelection() {
  static TreeSelection selection = nullptr;
  return selection;
}

ArchiveDelete& archiveDelete() {
  static ArchiveDelete connected = nullptr;
  return connected;
}
