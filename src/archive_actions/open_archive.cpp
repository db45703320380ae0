#include "archive_actions/open_archive.h"

#include "archive/archive_entry_store.h"
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

ArchiveOpening readWithProgress(const Westring& file) {
  StoppedByUser watcher;
  std::unique_ptr<DirReadProgress> progress;
  if (console) progress = std::make_unique<DirReadProgress>(&watcher.records);
  return openArchiveFile(file, file, watcher);
}

}  // namespace

std::unique_ptr<OpenArchive> openArchiveShown(const Westring& file, OpenArchive* parent) {
  if (parent != nullptr) return nullptr;
  ArchiveOpening opening = readWithProgress(file);
  for (const ArchiveMessage& message : opening.messages) {
    if (console) alert(message.text(), file, AlertButtons::Ok, AlertColour::Error);
  }
  return std::move(opening.archive);
}
