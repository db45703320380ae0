#include "archive_actions/actions_by_tools.h"

#include "archive_actions/archive_work.h"
#include "archive_actions/compress_command.h"
#include "archive_actions/delete_members.h"
#include "archive_actions/extract_command.h"
#include "foundation/names.h"

void ActionsByTools::remove(Panel& panel) {
  deleteInArchive(panel);
}

void ActionsByTools::transfer(Panel& source, TransferKind kind) {
  if (source.archive) {
    extractFromArchive(source, kind);
  } else {
    compressIntoOther(source, kind);
  }
}

Westring ActionsByTools::extract(Panel& panel, const Westring& name) {
  auto& archive = static_cast<ArchiveEntryStore&>(*panel.archive);
  return ArchiveWork::of(archive).take(innerPath(archive, joinPath(panel.path, name)));
}

void ActionsByTools::compress(Panel& panel) {
  compressFiles(panel);
}
