#include "archive_actions/open_archive.h"

#include "archive/archive_entry_store.h"
#include "archive_actions/archive_work.h"
#include "console/console.h"
#include "console/input.h"
#include "foundation/break_state.h"
#include "ui/alert.h"
#include "ui/progress_thread.h"

namespace {

class StoppedByUser : public ArchiveWatcher {
 public:
  bool stopped() override { return breakRequested() || escapePressed(); }

 private:
  BreakScope armed_;
};

constexpr int DeepestNesting = 16;  // archives in archives

ArchiveOpening readWithProgress(const Westring& path, const Westring& diskFile) {
  StoppedByUser watcher;
  std::unique_ptr<DirReadProgress> progress;
  if (console) progress = std::make_unique<DirReadProgress>(&watcher.records);
  return openArchiveFile(path, diskFile, watcher);
}

int depthOf(const OpenArchive* archive) {
  int depth = 0;
  for (; archive; archive = archive->parent.get()) ++depth;
  return depth;
}

std::unique_ptr<OpenArchive> openShown(const Westring& path, const Westring& diskFile) {
  ArchiveOpening opening = readWithProgress(path, diskFile);
  for (const ArchiveMessage& message : opening.messages) {
    if (console) alert(message.text(), path, AlertButtons::Ok, AlertColour::Error);
  }
  return std::move(opening.archive);
}

// A member is taken out first; the copy lives as long as the archive that it is.
std::unique_ptr<OpenArchive> openInside(const Westring& path, ArchiveEntryStore& parent) {
  const Westring inside = innerPath(parent, path);
  if (depthOf(&parent) >= DeepestNesting || !parent.fileOf(inside)) return nullptr;
  ArchiveWork& work = ArchiveWork::of(parent);
  const Westring copy = work.take(inside);
  if (copy.empty()) return nullptr;
  std::unique_ptr<OpenArchive> archive = openShown(path, copy);
  if (archive) ArchiveWork::of(static_cast<ArchiveEntryStore&>(*archive)).standIn(work);
  return archive;
}

}  // namespace

std::unique_ptr<OpenArchive> openArchiveShown(const Westring& file, OpenArchive* parent) {
  if (!parent) return openShown(file, file);
  // Every archive of a panel came from here.
  return openInside(file, static_cast<ArchiveEntryStore&>(*parent));
}
