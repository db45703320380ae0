#include "filecommands/date_command.h"

#include "filecommands/chosen_items.h"
#include "filecommands/date_dialog.h"
#include "fileops/file_date.h"
#include "foundation/path_info.h"
#include "panels/reader/directory_reader.h"
#include "ui/alert.h"
#include "ui/escape_watch.h"

namespace {

time_t startDate(const Panel& panel, const ChosenItems& items) {
  struct stat info;
  const bool known = !items.tagged && statPath(itemPath(panel, items.single()), info) == 0;
  return known ? info.st_mtime : time(nullptr);
}

// What was done loses its tag, so that an early end can be seen.
void changeTagged(Panel& panel, const ChosenItems& items, time_t date) {
  ItemPlaces places(panel);
  EscapeWatch watch;
  for (entry* item : items.entries) {
    if (watch.pressed() || setModificationTime(places.of(*item), date) != 0) return;
    markDone(panel, *item);
  }
}

void changeOne(const Panel& panel, const entry& item, time_t date) {
  ItemPlaces places(panel);
  const Place place = places.of(item);
  const int error = setModificationTime(place, date);
  if (error == 0) return;
  alert(errorText(error), place.shown(), AlertButtons::Ok, AlertColour::Error);
}

}  // namespace

void dateCommand(Panel& panel) {
  const ChosenItems items = chosenItems(panel, ParentEntry::Taken);
  if (items.empty()) return;
  time_t date = startDate(panel, items);
  const int count = static_cast<int>(items.entries.size());
  if (!askDate(items.tagged ? countedFiles(count) : items.name, date)) return;
  if (items.tagged) {
    changeTagged(panel, items, date);
  } else {
    changeOne(panel, items.single(), date);
  }
  panelRefresh();
}
