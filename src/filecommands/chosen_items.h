#pragma once

#include <string>
#include <vector>

#include "foundation/place.h"
#include "foundation/system.h"
#include "panels/model/panel.h"

// What a command on a panel works with: the tagged entries, or else the one under the cursor.
struct ChosenItems {
  std::vector<entry*> entries;  // of the panel, in its order; none: there is nothing to do
  bool tagged = false;
  Westring name;  // of the single one; in a tree panel the path of its directory

  bool empty() const { return entries.empty(); }
  entry& single() const { return *entries.front(); }
};

// Whether ".." under the cursor is taken: it is a directory, but has no name of its own.
enum class ParentEntry { Taken, PassedOver };
ChosenItems chosenItems(const Panel& panel, ParentEntry parent);

Westring countedFiles(int count);                          // "1 file", "3 files"
Westring itemPath(const Panel& panel, const entry& item);  // whole
void markDone(Panel& panel, entry& item);                  // its tag goes, and can be restored

// The items of a panel as places in its directory, which is opened once.
class ItemPlaces {
 public:
  explicit ItemPlaces(const Panel& panel);
  Place of(const entry& item);  // lives until the next call

 private:
  const Panel& panel_;
  Descriptor directory_;
  std::string name_;
  std::string path_;
};
