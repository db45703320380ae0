#include "tools/view_list.h"

#include "console/console.h"
#include "editor/dialogs/note_window.h"
#include "editor/window/editor.h"
#include "filecommands/archive_actions.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/threads.h"
#include "language/temporary_names.h"
#include "panels/commands/navigation.h"
#include "panels/picture/panel_draw.h"
#include "panels/picture/panel_title.h"
#include "panels/reader/directory_reader.h"
#include "viewer/viewer.h"

namespace {

constexpr uint32_t NoMoreFilesMs = 500;
constexpr int Nowhere = -1;

Westring pathOf(const Panel& panel, int index) {
  return joinPath(shownPath(panel), panel.entries[index]->name());
}

// Whether the entry is a file that can be viewed. In an archive nothing vanishes.
bool isFileThere(const Panel& panel, int index) {
  if (panel.entries[index]->isDirectory()) return false;
  return panel.archive || pathExists(pathOf(panel, index));
}

int nextFile(const Panel& panel, int index, int step) {
  for (int at = index + step; at >= 0 && at < panel.count(); at += step) {
    if (isFileThere(panel, at)) return at;
  }
  return Nowhere;
}

// Where the file can be read; "" when it could not be taken out of its archive.
Westring fetchFile(Panel& panel, int index) {
  if (!panel.archive) return pathOf(panel, index);
  removeTemporaries();  // of the file before
  return archiveActions()->extract(panel, panel.entries[index]->name());
}

// What the file is by now; one that is gone stays as it was.
void updateEntry(Panel& panel, int index) {
  if (panel.archive) return;
  int error = 0;
  const EntryPtr now = entryOfPath(pathOf(panel, index), error);
  if (!now || now->isDirectory()) return;
  entry* item = panel.entries[index];
  if (item->tagged) panel.addTagged(now->size - item->size);
  item->size = now->size;
  item->owner = now->owner;
  item->group = now->group;
  item->attributes = now->attributes;
  item->mode = now->mode;
  item->time = now->time;
  item->date = now->date;
  if (index != panel.currentIndex()) return drawEntry(panel, index);
  drawCursor(panelPair().sideOf(panel), CursorBar::On);
}

void moveCursorTo(Panel& panel, int index) {
  const int side = panelPair().sideOf(panel);
  BatchScope batch;
  drawCursor(side, CursorBar::Off);
  moveCursor(panel, index - panel.currentIndex());
  drawCursor(side, CursorBar::On);
}

void tellNoMoreFiles() {
  TDEditor::CNoteWindow note(TDEditor::NoMoreFiles);
  console->completePainting();
  sleepMs(NoMoreFilesMs);
}

// What the viewer was left with, and the start of the line at its top.
struct Viewed {
  Key::Code key;
  int64_t topLine = 0;

  bool asksForEditor() const { return key == Key::ShiftF4 || key == Key::AltF4; }
};

Viewed viewEntry(Panel& panel, int index, Westring& path) {
  Viewed viewed{Key::Esc};
  path = fetchFile(panel, index);
  if (path.empty()) return viewed;
  const Westring name = panel.entries[index]->name();
  setWindowTitle(&name);
  viewed.key = viewFile(path, AnyPosition, &viewed.topLine);
  updateEntry(panel, index);
  return viewed;
}

// The entry to go on with after `key`, or Nowhere when the user has left.
int goOn(const Panel& panel, int index, Key::Code key) {
  if (key != Key::AltUp && key != Key::AltDown) return Nowhere;
  const int next = nextFile(panel, index, key == Key::AltUp ? -1 : 1);
  if (next != Nowhere) return next;
  tellNoMoreFiles();
  return index;
}

}  // namespace

void viewList(Panel& panel) {
  if (!panel.currentEntry()) return;
  int last = panel.currentIndex();
  Viewed viewed;
  Westring path;
  for (int index = last; index != Nowhere; index = goOn(panel, last, viewed.key)) {
    last = index;
    viewed = viewEntry(panel, index, path);
  }
  moveCursorTo(panel, last);
  if (!viewed.asksForEditor()) return;
  editFile(path, viewed.topLine);
  panelRefresh();
}

void viewOne(const Westring& path) {
  Viewed viewed{Key::Esc};
  viewed.key = viewFile(path, AnyPosition, &viewed.topLine);
  if (viewed.asksForEditor()) editFile(path, viewed.topLine);
}
