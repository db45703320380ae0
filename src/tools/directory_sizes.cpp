#include "tools/directory_sizes.h"

#include <vector>

#include "console/console.h"
#include "console/key_codes.h"
#include "foundation/names.h"
#include "foundation/place.h"
#include "foundation/text_format.h"
#include "foundation/threads.h"
#include "foundation/utf8.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/model/panel_pair.h"
#include "panels/picture/panel_draw.h"
#include "panels/reader/directory_reader.h"
#include "tools/panel_trees.h"
#include "tree/directory_total.h"
#include "ui/dialog.h"
#include "ui/escape_watch.h"

namespace {

constexpr int Columns = 54, Rows = 8;
constexpr int UpperThird = -3;
constexpr int Left = 1;
constexpr int CountRow = 1, SizeRow = 2, PathRow = 4, ButtonRow = 5;
constexpr int CountWidth = 14, SizeWidth = 30, PathWidth = 50;
constexpr int ButtonColumn = 23;
constexpr uint32_t RedrawMs = 100;

Westring counted(const std::atomic<int64_t>& counter, int width) {
  const auto value = static_cast<unsigned long long>(counter.load(std::memory_order_relaxed));
  return padRight(trim(formatSize(value, width)), width);
}

// The window of a count: a thread of its own draws what has been counted and where it is.
class SizeWindow : public TotalWatcher {
 public:
  SizeWindow();
  ~SizeWindow() override { stop(); }
  SizeWindow(const SizeWindow&) = delete;
  SizeWindow& operator=(const SizeWindow&) = delete;

  TotalCounters counters;
  void entered(const char* path) override;
  bool interrupted() override { return escape_.pressed(); }
  // Draws the last state and leaves the window to this thread.
  void stop();
  void waitForButton();

 private:
  static void threadEntry(void* self);
  void redraw();

  EscapeWatch escape_;
  Dialog window_;
  MutexSem pathLock_;
  std::string path_;
  EventSem stop_;
  ThreadHandle thread_;
};

SizeWindow::SizeWindow() : window_(-1, UpperThird, Columns, Rows, colourOf(Colour::Messages)) {
  window_.putFrameTitle(" Reading Directories ");
  redraw();
  thread_ = startThread(threadEntry, this);
}

void SizeWindow::entered(const char* path) {
  const MutexLock guard(pathLock_);
  path_ = path;
}

void SizeWindow::threadEntry(void* self) {
  auto* window = static_cast<SizeWindow*>(self);
  while (window->stop_.wait(RedrawMs) != 0) window->redraw();
}

void SizeWindow::redraw() {
  std::string path;
  {
    const MutexLock guard(pathLock_);
    path = path_;
  }
  BatchScope batch;
  window_.put(Left, CountRow,
              L"Directories: " + counted(counters.directories, CountWidth) + L"   Files: " +
                  counted(counters.files, CountWidth));
  window_.put(Left, SizeRow, L"Total Size: " + counted(counters.bytes, SizeWidth));
  const Westring shown = shortenPath(decodeFileName(path.c_str()), PathWidth);
  window_.put(Left, PathRow, padRight(shown, PathWidth));
}

void SizeWindow::stop() {
  if (!thread_.running) return;
  stop_.post();
  joinThread(thread_);
  redraw();
}

void SizeWindow::waitForButton() {
  window_.addButton(ButtonColumn, ButtonRow, Group::New, Key::Enter, "OK");
  window_.run();
}

bool isCountable(const entry& item) {
  return item.isDirectory() && !item.isLink() && !sameName(item.name(), ParentName);
}

std::vector<entry*> chosenDirectories(const Panel& panel) {
  std::vector<entry*> chosen;
  if (panel.taggedCount == 0) {
    entry* item = panel.currentEntry();
    if (item && isCountable(*item)) chosen.push_back(item);
    return chosen;
  }
  for (entry* item : panel.entries) {
    if (item->tagged && isCountable(*item)) chosen.push_back(item);
  }
  return chosen;
}

void takeTotal(Panel& panel, entry& item, int64_t bytes) {
  if (item.tagged) panel.addTagged(static_cast<uint64_t>(bytes) - item.size);
  item.size = static_cast<uint64_t>(bytes);
  item.level = 1;
}

// What an archive holds is known; nothing is walked.
int64_t countInArchive(const Panel& panel, const Westring& path, SizeWindow& window) {
  window.entered(bytePath(path).c_str());
  const ArchiveCount count = panel.archive->countBelow(innerPath(*panel.archive, path));
  window.counters.directories += static_cast<int64_t>(count.directories);
  window.counters.files += static_cast<int64_t>(count.files);
  window.counters.bytes += static_cast<int64_t>(count.bytes);
  const auto bytes = static_cast<int64_t>(count.bytes);
  if (TREENODE* node = panelTrees().treeOf(panel).find(path)) node->size = bytes;
  return bytes;
}

// False when the user ended it.
bool countInto(Panel& panel, const std::vector<entry*>& directories, SizeWindow& window) {
  for (entry* item : directories) {
    const Westring path = joinPath(panel.path, item->name());
    const std::optional<int64_t> bytes =
        panel.archive
            ? countInArchive(panel, path, window)
            : countDirectory(panelTrees().tree(), bytePath(path), window.counters, window);
    if (!bytes) return false;
    takeTotal(panel, *item, *bytes);
  }
  return true;
}

}  // namespace

void countDirectorySizes(Panel& panel) {
  if (!panel.isList()) return;
  const std::vector<entry*> directories = chosenDirectories(panel);
  if (directories.empty()) return;
  {
    SizeWindow window;
    const bool whole = countInto(panel, directories, window);
    window.stop();
    if (whole && GlobalOptions::SizeCountPause) window.waitForButton();
  }
  panelTrees().save();
  PanelPair& pair = panelPair();
  if (pair.holds(panel) && pair.other(panel).isTree()) {
    readDirectory(pair.other(panel));
    drawPanel(pair.other(panel));
  }
  drawPanel(panel);
}
