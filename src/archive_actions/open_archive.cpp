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

ArchiveAttempt openShown(const Westring& path, const Westring& diskFile) {
  ArchiveOpening opening = readWithProgress(path, diskFile);
  for (const ArchiveMessage& message : opening.messages) {
    if (console) alert(message.text(), path, AlertButtons::Ok, AlertColour::Error);
  }
  if (opening.archive) return ArchiveAttempt(std::move(opening.archive));
  const bool known = opening.stopped || !opening.messages.empty();
  return known ? Refusal::Explained : Refusal::Unexplained;
}

// A member is taken out first; the copy lives as long as the archive that it is.
ArchiveAttempt openInside(const Westring& path, ArchiveEntryStore& parent) {
  const Westring inside = innerPath(parent, path);
  if (depthOf(&parent) >= DeepestNesting || !parent.fileOf(inside)) {
    return Refusal::Unexplained;
  }
  ArchiveWork& work = ArchiveWork::of(parent);
  const Westring copy = work.take(inside);
  if (copy.empty()) return Refusal::Explained;
  ArchiveAttempt attempt = openShown(path, copy);
  if (attempt.archive) {
    ArchiveWork::of(static_cast<ArchiveEntryStore&>(*attempt.archive)).standIn(work);
  }
  return attempt;
}

}  // namespace

ArchiveAttempt openArchiveShown(const Westring& file, OpenArchive* parent) {
  if (!parent) return openShown(file, file);
  // Every archive of a panel came from here.
  return openInside(file, static_cast<ArchiveEntryStore&>(*parent));
}
