#include "archive_actions/extract_command.h"

#include <cerrno>
#include <optional>

#include "archive_actions/archive_members.h"
#include "archive_actions/delete_members.h"
#include "archive_actions/destination_dialog.h"
#include "archive_actions/lent_rights.h"
#include "archive_actions/private_directory.h"
#include "archive_actions/run_archiver.h"
#include "archive_actions/working_directory.h"
#include "archive_actions/written_files.h"
#include "filecommands/console_ui.h"
#include "filecommands/destination.h"
#include "filecommands/entry_path.h"
#include "fileops/notices.h"
#include "fileops/transfer.h"
#include "foundation/break_state.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/place.h"
#include "options/options.h"
#include "panels/commands/selection.h"
#include "panels/reader/directory_reader.h"
#include "ui/alert.h"

namespace {

void tellError(const Westring& text, const Westring& path) {
  alert(text, path, AlertButtons::Ok, AlertColour::Error);
}

class ExtractCommand {
 public:
  ExtractCommand(Panel& source, TransferKind kind) : source_(source), kind_(kind) {}

  void run();

 private:
  bool askDestination();
  bool mayRun(const ArchiveTool& tool) const;
  bool hasRoom() const;
  bool makeDirectory();
  bool runTool(const ArchiveTool& tool);
  bool moveIntoPlace();
  Outcome moveOne(Transfer& transfer, const ChosenMember& member);
  void settle(bool goesOn);
  ArchiveEntryStore& archive() const { return *archiveOf(source_); }

  Panel& source_;
  const TransferKind kind_;
  Westring archive_;  // its path
  Westring destination_;
  ChosenItems items_;
  std::vector<ChosenMember> members_;
  std::vector<ChosenMember> placed_;
  std::vector<Westring> left_;  // names that are still where they were
  Westring missing_;            // the first one that the tool didn't write
  PrivateDirectory directory_;
};

// Where the other panel's files lie on the disk.
Westring proposedDestination(const Panel& source) {
  const Panel& other = panelOpposite(source);
  if (other.archive) return addSlash(physicalDirectory(other));
  const Westring directory = destinationDirectory(other);
  return addSlash(directory.empty() ? physicalDirectory(source) : directory);
}

bool ExtractCommand::askDestination() {
  const auto count = static_cast<int>(items_.entries.size());
  const Westring line =
      items_.tagged ? destinationLine(ArchiveAction::Extract, kind_, count)
                    : destinationLine(ArchiveAction::Extract, kind_, lastComponent(items_.name));
  const Westring proposed = proposedDestination(source_);
  Westring text = proposed;
  if (!askArchiveDestination(line, text) || text.empty()) return false;
  Destination found;
  const DestinationContext context{physicalDirectory(source_), Westring(), proposed, Westring()};
  if (resolveDestination(text, context, found) != 0) {
    tellError(L"Invalid path", text);
    return false;
  }
  destination_ = found.path;
  if (isDirectoryPath(destination_)) return true;
  tellError(
      found.asDirectory ? L"Directory does not exist" : L"Destination must be a valid directory",
      destination_);
  return false;
}

// Names that climb are stripped by some tools; the others would follow them.
bool ExtractCommand::mayRun(const ArchiveTool& tool) const {
  if (!tool.hasCommand()) {
    tellError(L"No command for this archive type", archive().path());
    return false;
  }
  if (tool.stripsUnsafeNames()) return true;
  const ArchiveRecords& records = archive().records();
  bool unsafe = tool.directoryForm() == DirectoryForm::Nothing && records.hidesBelow(L"");
  for (const ChosenMember& member : members_) {
    unsafe |= member.item->isDirectory() && records.hidesBelow(member.innerPath.data());
  }
  if (unsafe) tellError(L"Unsafe names in archive", archive().path());
  return !unsafe;
}

bool ExtractCommand::hasRoom() const {
  uint64_t wanted = 0;
  for (const ChosenMember& member : members_) {
    if (__builtin_add_overflow(wanted, member.size, &wanted)) wanted = UINT64_MAX;
  }
  uint64_t total = 0;
  uint64_t free = 0;
  uint64_t unit = 0;
  if (diskSpace(destination_, total, free, unit) != 0 || wanted <= free) return true;
  tellError(errorText(ENOSPC), destination_);
  return false;
}

bool ExtractCommand::makeDirectory() {
  if (directory_.make(destination_) == 0) return true;
  tellError(L"Unable to create temporary directory", destination_);
  return false;
}

bool ExtractCommand::runTool(const ArchiveTool& tool) {
  const WorkingDirectory inside(directory_.path());
  if (inside.error() != 0) {
    tellError(errorText(inside.error()), directory_.path());
    return false;
  }
  if (items_.tagged) {
    for (entry* item : items_.entries) markDone(source_, *item);
  }
  return runArchiver(tool, archive().diskFile(), operandsOf(members_), source_) == 0;
}

Outcome ExtractCommand::moveOne(Transfer& transfer, const ChosenMember& member) {
  FoundPlace place;
  const bool directory = member.item->isDirectory();
  int error = directory ? turnBackslashes(directory_.fd(), member.operands) : 0;
  if (error == 0) error = findMember(directory_.fd(), member.innerPath, member.operands, place);
  if (error != 0) {
    if (missing_.empty()) missing_ = member.innerPath;
    return Outcome::LeftInPlace;
  }
  const Westring source = joinPath(directory_.path(), decodeFileName(place.path.c_str()));
  const Westring target = joinPath(destination_, lastComponent(member.innerPath));
  const std::string targetPath = bytePath(target);
  LentRights rights;
  if (directory) rights.lend({place.parent.get(), place.name.c_str(), place.path.c_str()});
  const Outcome outcome = transfer.run(bytePath(source), targetPath, 1, 1);
  rights.takeBack(placeOf(targetPath.c_str()));
  return outcome;
}

// False when the user gave up.
bool ExtractCommand::moveIntoPlace() {
  ConsoleUi ui;
  RunningOperation operation(ui, GlobalOptions::Confirmations);
  Transfer transfer(operation, TransferKind::Move);
  Outcome outcome = Outcome::Done;
  for (const ChosenMember& member : members_) {
    if (outcome != Outcome::Cancelled && !operation.cancelled()) {
      outcome = moveOne(transfer, member);
    }
    if (outcome == Outcome::Done) {
      placed_.push_back(member);
    } else {
      left_.emplace_back(member.item->name());
    }
  }
  operation.descriptions.flush();
  tellDescriptionLeftovers(operation);
  ui.closeWindows();
  return outcome != Outcome::Cancelled && !operation.cancelled();
}

// What was moved leaves the archive; what wasn't stays tagged.
void ExtractCommand::settle(bool goesOn) {
  const Westring shown = source_.path;
  if (kind_ == TransferKind::Move && goesOn && !placed_.empty()) {
    std::vector<Westring> names;
    for (const ChosenMember& member : placed_) names.emplace_back(member.item->name());
    static_cast<void>(deleteMembers(source_, placed_));
    readDirectory(source_);
    if (sameName(source_.path, shown)) {
      for (const entry* item : entriesNamed(source_, names)) {
        if (item != nullptr) left_.emplace_back(item->name());
      }
    }
  }
  if (items_.tagged && sameName(source_.path, shown)) {
    for (entry* item : entriesNamed(source_, left_)) {
      if (item != nullptr) changeTag(source_, *item, TagMode::Tag);
    }
  }
  if (kind_ == TransferKind::Move && goesOn && !left_.empty()) {
    tellError(L"Not everything was moved", archive_);
  } else if (!missing_.empty()) {
    tellError(L"File not found", missing_);
  }
}

void ExtractCommand::run() {
  items_ = chosenItems(source_, ParentEntry::PassedOver);
  if (items_.empty() || !askDestination() || !stillThere(source_, items_)) return;
  const BreakScope armed;
  members_ = chosenMembers(source_, archive(), items_);
  archive_ = archive().path();
  for (entry* item : source_.entries) item->wasTagged = 0;
  const ArchiveTool tool(static_cast<Archiver>(archive().type()), ToolTask::Extract);
  if (!mayRun(tool) || !hasRoom() || !makeDirectory()) return;
  if (runTool(tool)) settle(moveIntoPlace());
  directory_.remove();
  panelRefresh();
}

}  // namespace

void extractFromArchive(Panel& source, TransferKind kind) {
  ExtractCommand(source, kind).run();
}
