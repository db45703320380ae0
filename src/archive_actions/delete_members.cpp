#include "archive_actions/delete_members.h"

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <unordered_map>

#include "archive_actions/archive_work.h"
#include "archive_actions/run_archiver.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "panels/commands/change_directory.h"
#include "panels/commands/selection.h"
#include "panels/reader/directory_reader.h"
#include "ui/alert.h"

namespace {

void tellError(const char* text, const Westring& path) {
  alert(text, path, AlertButtons::Ok, AlertColour::Error);
}

void readArchiveAgain(Panel& panel) {
  const Westring directory = parentOf(panel.archive->path());
  if (!reopenInnermost(panel.archive)) panel.path = directory;
}

}  // namespace

ArchiveEntryStore* archiveOf(const Panel& panel) {
  return static_cast<ArchiveEntryStore*>(panel.archive.get());
}

std::vector<entry*> entriesNamed(const Panel& panel, const std::vector<Westring>& names) {
  std::unordered_map<std::wstring_view, entry*> byName;
  for (entry* item : panel.entries) byName.emplace(item->name(), item);
  std::vector<entry*> result;
  for (const Westring& name : names) {
    const auto found = byName.find(name.data());
    result.push_back(found == byName.end() ? nullptr : found->second);
  }
  return result;
}

bool stillThere(Panel& panel, ChosenItems& items) {
  if (!panel.archive) return false;
  ArchiveWork::of(*archiveOf(panel)).giveBack();
  if (panel.archive->isCurrent()) return true;
  const Westring shown = panel.path;
  std::vector<Westring> names;
  for (const entry* item : items.entries) names.emplace_back(item->name());
  readDirectory(panel);
  const bool same = sameName(panel.path, shown);
  items.entries = same ? entriesNamed(panel, names) : std::vector<entry*>(names.size());
  const auto gone = std::find(items.entries.begin(), items.entries.end(), nullptr);
  if (gone == items.entries.end()) return true;
  tellError("File not found", joinPath(shown, names[gone - items.entries.begin()]));
  return false;
}

int deleteMembers(Panel& panel, const std::vector<ChosenMember>& members) {
  const ArchiveEntryStore& archive = *archiveOf(panel);
  const ArchiveTool tool(static_cast<Archiver>(archive.type()), ToolTask::Delete);
  const std::vector<ToolOperand> operands = operandsOf(members);
  if (!tool.hasCommand()) {
    tellError("No command for this archive type", archive.path());
    return -EINVAL;
  }
  const auto isMistaken = [&tool](const ToolOperand& one) { return tool.mistakes(one); };
  if (std::any_of(operands.begin(), operands.end(), isMistaken)) {
    tellError("Unsafe names in archive", archive.path());
    return -EINVAL;
  }
  if (const int error = setWorkingDirectory(panel); error != 0) {
    alert(errorText(error), physicalDirectory(panel), AlertButtons::Ok, AlertColour::Error);
    return -error;
  }
  const int result = runArchiver(tool, archive.diskFile(), operands, panel);
  readArchiveAgain(panel);
  return result;
}

void deleteInArchive(Panel& panel) {
  ChosenItems items = chosenItems(panel, ParentEntry::PassedOver);
  if (items.empty() || !stillThere(panel, items)) return;
  std::vector<Westring> names;
  const std::vector<ChosenMember> members = chosenMembers(panel, *archiveOf(panel), items);
  names.reserve(members.size());
  for (const ChosenMember& member : members) names.emplace_back(member.item->name());
  if (items.tagged) {
    for (entry* item : items.entries) markDone(panel, *item);
  }
  const Westring shown = panel.path;
  static_cast<void>(deleteMembers(panel, members));
  if (!items.tagged) return;
  readDirectory(panel);
  if (!sameName(panel.path, shown)) return;
  for (entry* item : entriesNamed(panel, names)) {
    if (item != nullptr) changeTag(panel, *item, TagMode::Tag);
  }
}
