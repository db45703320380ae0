#include "filecommands/chosen_items.h"

#include "filecommands/entry_path.h"
#include "foundation/names.h"
#include "panels/commands/selection.h"
#include "panels/model/directory_tree.h"

ChosenItems chosenItems(const Panel& panel, ParentEntry parent) {
  ChosenItems items;
  if (panel.taggedCount != 0) {
    items.tagged = true;
    for (entry* item : panel.entries) {
      if (item->tagged) items.entries.push_back(item);
    }
    return items;
  }
  entry* const current = panel.currentEntry();
  if (!current) return items;
  items.name = panel.isTreeStyle() ? treeDirectory(panel) : Westring(current->name());
  const bool passed = parent == ParentEntry::PassedOver && sameName(items.name, ParentName);
  if (!items.name.empty() && !passed) items.entries.push_back(current);
  return items;
}

Westring countedFiles(int count) {
  Estring text;
  text.format("%d file%s", count, count == 1 ? "" : "s");
  return Westring(text);
}

Westring itemPath(const Panel& panel, const entry& item) {
  return panel.isTreeStyle() ? treeDirectory(panel) : entryPath(panel, item.name());
}

void markDone(Panel& panel, entry& item) {
  changeTag(panel, item, TagMode::Untag);
  item.wasTagged = 1;
}

ItemPlaces::ItemPlaces(const Panel& panel) : panel_(panel) {
  constexpr int ToWorkIn = O_PATH | O_DIRECTORY | O_CLOEXEC;
  if (!panel.isTreeStyle()) {
    directory_ = Descriptor(System::open(bytePath(panel.path).c_str(), ToWorkIn));
  }
}

Place ItemPlaces::of(const entry& item) {
  path_ = bytePath(itemPath(panel_, item));
  if (!directory_.valid()) return placeOf(path_.c_str());
  name_ = bytePath(item.name());
  return {directory_.get(), name_.c_str(), path_.c_str()};
}
