#include "filecommands/copy_command.h"

#include "filecommands/console_ui.h"
#include "filecommands/copy_dialog.h"
#include "filecommands/destination.h"
#include "filecommands/entry_path.h"
#include "fileops/directory_size.h"
#include "fileops/error_dialog.h"
#include "fileops/folded_name.h"
#include "fileops/notices.h"
#include "fileops/target_name.h"
#include "fileops/transfer.h"
#include "foundation/break_state.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/place.h"
#include "foundation/threads.h"
#include "options/options.h"
#include "panels/commands/selection.h"
#include "panels/model/directory_tree.h"
#include "panels/model/panel_pair.h"
#include "panels/model/panel_position.h"
#include "panels/picture/panel_draw.h"
#include "panels/reader/directory_reader.h"
#include "ui/alert.h"

namespace {

// This system tells no names of file systems.
constexpr wchar_t FileSystemName[] = L"";

class CopyCommand {
 public:
  CopyCommand(Panel& source, int flags)
      : source_(source),
        kind_(flags & CopyFlag::Move ? TransferKind::Move : TransferKind::Copy),
        bareName_(flags & CopyFlag::BareName),
        operation_(ui_, GlobalOptions::Confirmations) {
    operation_.foldNames = isInCaseFilter(FileSystemName, GlobalOptions::CaseFilter);
  }

  void run(const Westring* explicitDestination);

 private:
  bool askDestination(Westring& text);
  bool resolve(const Westring& text);
  void runSingle();
  void runTagged();
  bool checkDirectory();
  void walkTagged();
  Outcome transferTagged(Transfer& transfer, const entry& item, int index);
  bool countDirectory(const Westring& path, int64_t& total);
  bool countAcrossDevices(int64_t& total);
  bool movesAcrossDevices(const Westring& targetDirectory) const;
  void start(int64_t total);
  void end();
  Westring sourcePath(const entry& item) const;

  Panel& source_;
  const TransferKind kind_;
  const bool bareName_;
  ConsoleUi ui_;
  RunningOperation operation_;
  const entry* current_ = nullptr;
  Westring name_;  // of the cursor's entry; in a tree panel its path
  DestinationContext context_;
  Destination destination_;
  int count_ = 1;     // of the items
  Westring newName_;  // where the cursor goes
};

void tellError(const char* text, const Westring& path) {
  alert(text, path, AlertButtons::Ok, AlertColour::Error);
}

void CopyCommand::run(const Westring* explicitDestination) {
  current_ = source_.currentEntry();
  if (source_.count() == 0 || !current_) return;
  name_ = source_.isTreeStyle() ? treeDirectory(source_) : Westring(current_->name());
  if (name_.empty()) return;
  if (source_.taggedCount == 0 && sameName(name_, ParentName)) return;
  context_.base = source_.path;
  context_.other = destinationDirectory(panelOpposite(source_));
  context_.entryName = name_;
  Westring text;
  if (explicitDestination) {
    text = *explicitDestination;
  } else if (!askDestination(text)) {
    return;
  }
  const BreakScope armed;
  if (resolve(text)) {
    if (source_.taggedCount == 0) {
      runSingle();
    } else {
      runTagged();
    }
  }
  end();
}

bool CopyCommand::askDestination(Westring& text) {
  const bool single = source_.taggedCount == 0;
  if (bareName_ || context_.other.empty()) {
    text = name_;
  } else {
    text = addSlash(context_.other);
    if (single) text += lastComponent(name_);
  }
  context_.proposed = text;
  const CopyDialogTexts texts =
      single ? copyDialogTexts(kind_, name_) : copyDialogTexts(kind_, source_.taggedCount);
  return runCopyDialog(texts, text, context_.other, single ? Toggle::On : Toggle::Off);
}

bool CopyCommand::resolve(const Westring& text) {
  if (trim(text).empty()) return false;
  const int error = resolveDestination(text, context_, destination_);
  if (error == ENAMETOOLONG) {
    static_cast<void>(showError(ui_, error, text));
  } else if (error != 0) {
    tellError("Invalid path", text);
  }
  return error == 0;
}

Westring CopyCommand::sourcePath(const entry& item) const {
  return source_.isTreeStyle() ? name_ : entryPath(source_, item.name());
}

void CopyCommand::start(int64_t total) {
  operation_.progress.total = total;
  operation_.progress.start = clockSeconds();
  ui_.watch(operation_.progress);
}

bool CopyCommand::movesAcrossDevices(const Westring& targetDirectory) const {
  struct stat from;
  struct stat to;
  return kind_ == TransferKind::Move && statPath(source_.path, from) == 0 &&
         statPath(targetDirectory, to) == 0 && from.st_dev != to.st_dev;
}

// False when the user gave up.
bool CopyCommand::countDirectory(const Westring& path, int64_t& total) {
  const std::string bytes = bytePath(path);
  const auto size = directorySize(operation_, placeOf(bytes.c_str()));
  if (size) total += *size;
  return size.has_value();
}

void CopyCommand::runSingle() {
  const Westring source = sourcePath(*current_);
  const Westring target = destination_.asDirectory
                              ? joinPath(destination_.path, lastComponent(source))
                              : targetName(source, destination_.path);
  const bool directory = current_->isDirectory() && !current_->isLink();
  int64_t total = static_cast<int64_t>(current_->size);
  if (directory && movesAcrossDevices(parentOf(target))) {
    total = 0;
    if (!countDirectory(source, total)) return;
  }
  start(total);
  Transfer transfer(operation_, kind_);
  const Outcome outcome = transfer.run(bytePath(source), bytePath(target), 1, 1);
  if (outcome != Outcome::Done || kind_ == TransferKind::Copy) return;
  if (directory) {
    directoryTree()->renamed(source_, source, target);
    directoryTree()->save();
  }
  if (sameName(parentOf(source), parentOf(target))) newName_ = lastComponent(target);
}

// Tagged files need a directory to go to, or a device that takes them all.
bool CopyCommand::checkDirectory() {
  const bool mask =
      isNameMask(destination_.asDirectory ? addSlash(destination_.path) : destination_.path, name_);
  const Westring tested = mask ? parentOf(destination_.path) : destination_.path;
  if (isDevice(tested) || isDirectoryPath(tested)) return true;
  tellError(destination_.asDirectory || mask ? "Directory does not exist"
                                             : "Destination must be a valid directory",
            tested);
  return false;
}

bool CopyCommand::countAcrossDevices(int64_t& total) {
  const Westring directory =
      isDirectoryPath(destination_.path) ? destination_.path : parentOf(destination_.path);
  if (!movesAcrossDevices(directory)) return true;
  for (const entry* item : source_.entries) {
    if (!item->tagged || !item->isDirectory() || item->isLink()) continue;
    total -= static_cast<int64_t>(item->size);
    if (!countDirectory(sourcePath(*item), total)) return false;
  }
  return true;
}

void CopyCommand::runTagged() {
  if (!checkDirectory()) return;
  if (destination_.asDirectory) destination_.path = addSlash(destination_.path);
  int64_t total = source_.taggedSize;
  if (!countAcrossDevices(total)) return;
  start(total);
  for (entry* item : source_.entries) item->wasTagged = 0;
  walkTagged();
}

void CopyCommand::walkTagged() {
  Transfer transfer(operation_, kind_);
  count_ = source_.taggedCount;
  bool treeChanged = false;
  int index = 0;
  for (entry* item : source_.entries) {
    if (!item->tagged) continue;
    const Outcome outcome = transferTagged(transfer, *item, ++index);
    if (outcome == Outcome::Done) {
      treeChanged |= kind_ == TransferKind::Move && item->isDirectory() && !item->isLink();
      changeTag(source_, *item, TagMode::Untag);
      item->wasTagged = 1;
    }
    if (outcome == Outcome::Cancelled || operation_.cancelled()) break;
  }
  if (treeChanged) directoryTree()->save();
}

Outcome CopyCommand::transferTagged(Transfer& transfer, const entry& item, int index) {
  const Westring source = sourcePath(item);
  const Westring target = targetName(source, destination_.path);
  const Outcome outcome = transfer.run(bytePath(source), bytePath(target), index, count_);
  const bool moved = outcome == Outcome::Done && kind_ == TransferKind::Move;
  if (moved && item.isDirectory() && !item.isLink())
    directoryTree()->renamed(source_, source, target);
  return outcome;
}

void CopyCommand::end() {
  operation_.descriptions.flush();
  tellDescriptionLeftovers(operation_);
  tellChanged(operation_);
  ui_.closeWindows();
  panelRefresh();
  if (!panelPair().holds(source_) || newName_.empty()) return;
  selectName(source_, newName_.data());
  drawPanel(source_);
}

}  // namespace

void copyCommand(Panel& source, int flags, const Westring* explicitDestination) {
  CopyCommand(source, flags).run(explicitDestination);
}
