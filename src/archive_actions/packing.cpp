#include "archive_actions/packing.h"

#include "archive/archive_entry_store.h"
#include "archive_actions/packed_files.h"
#include "archive_actions/run_archiver.h"
#include "archive_actions/tool_run.h"
#include "archive_actions/working_directory.h"
#include "foundation/file_mode_mask.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/safe_file.h"
#include "panels/commands/selection.h"
#include "panels/model/directory_tree.h"
#include "ui/alert.h"

namespace {

constexpr mode_t NewArchiveMode = 0666;  // before the umask

}  // namespace

Packing::Packing(Panel& source, const ChosenItems& items, ArchiveType type, const Westring& archive)
    : source_(source),
      type_(type),
      archive_(archive),
      tagged_(items.tagged),
      directory_(source.isTreeStyle() ? parentOf(items.name) : source.path) {
  for (entry* item : items.entries) {
    const Westring path = itemPath(source, *item);
    if (!sameFile(path, archive)) items_.push_back({item, lastComponent(path)});
  }
}

bool Packing::runTool() {
  const ArchiveTool tool(static_cast<Archiver>(type_), ToolTask::Compress);
  if (!tool.hasCommand()) {
    alert("No command for this archive type", archive_, AlertButtons::Ok, AlertColour::Error);
    return false;
  }
  const WorkingDirectory inside(directory_);
  if (inside.error() != 0) {
    alert(errorText(inside.error()), directory_, AlertButtons::Ok, AlertColour::Error);
    return false;
  }
  std::vector<ToolOperand> operands;
  for (const Item& item : items_) {
    operands.emplace_back();
    operands.back().path = item.name;
    operands.back().directory = item.item->isDirectory();
    if (!tool.mistakes(operands.back())) continue;
    alert("The archiver would take other files for it", joinPath(directory_, item.name),
          AlertButtons::Ok, AlertColour::Error);
    return false;
  }
  for (const Item& item : items_) {
    if (tagged_) markDone(source_, *item.item);
  }
  start_ = fileTimeNow();
  if (tool.writesArchiveAnew()) return makeAnew(tool, operands);
  return runArchiver(tool, archive_, operands, source_) == 0;
}

// The old archive, if there is one, stays until the tool has made the new one.
bool Packing::makeAnew(const ArchiveTool& tool, const std::vector<ToolOperand>& operands) {
  SafeFile anew;
  int error = anew.create(archive_);
  if (error == 0) {
    std::wstring words;
    for (const ToolOperand& operand : operands) {
      words += (words.empty() ? L"" : L" ") + tool.words(operand);
    }
    int code = 0;
    const Westring target = decodeFileName(anew.temporaryPath().c_str());
    const ToolEnd end = runToolShown(tool.command(target, words), source_, code);
    if (end != ToolEnd::Ran || code > tool.highestCode()) return false;
    error = anew.commit(NewArchiveMode & ~fileModeMask());
  }
  if (error != 0) alert(errorText(error), archive_, AlertButtons::Ok, AlertColour::Error);
  return error == 0;
}

// What is in the archive by now is what counts, whatever the tool has said.
void Packing::settle(bool removes) {
  ArchiveWatcher nobody;
  const ArchiveOpening made = openArchiveFile(archive_, archive_, nobody);
  bool whole = true;
  for (const Item& item : items_) {
    const std::string path = bytePath(joinPath(directory_, item.name));
    const Place place = placeOf(path.c_str());
    bool done = false;
    if (made.archive) {
      const PackedFiles packed(*made.archive, start_);
      const bool single = type_ == ArchiveType::Gzip;
      done = removes ? packed.remove(place, item.name) : single || packed.holds(place, item.name);
    }
    if (done && removes && item.item->isDirectory()) {
      directoryTree()->removed(joinPath(directory_, item.name));
    }
    if (!done && tagged_) changeTag(source_, *item.item, TagMode::Tag);
    whole = whole && done;
  }
  if (!removes) return;
  directoryTree()->save();
  if (!whole) alert("Not everything was moved", archive_, AlertButtons::Ok, AlertColour::Error);
}

void Packing::run(TransferKind kind) {
  const bool ran = runTool();
  settle(ran && kind == TransferKind::Move);
}
