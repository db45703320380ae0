#include "filecommands/link_command.h"

#include <cerrno>

#include "filecommands/chosen_items.h"
#include "filecommands/console_ui.h"
#include "filecommands/copy_dialog.h"
#include "filecommands/destination.h"
#include "filecommands/entry_path.h"
#include "fileops/error_dialog.h"
#include "foundation/break_state.h"
#include "foundation/names.h"
#include "foundation/path_info.h"
#include "foundation/text_format.h"
#include "panels/reader/directory_reader.h"
#include "ui/alert.h"

namespace {

constexpr int NameWidth = 47;

class LinkCommand {
 public:
  LinkCommand(Panel& panel, const ChosenItems& items);

  bool ask();
  void run();

 private:
  bool accepts(const Westring& text);
  Westring line() const;
  void linkTagged();
  Outcome makeLink(const Westring& target, const Westring& link);

  Panel& panel_;
  const ChosenItems& items_;
  DestinationContext context_;
  Destination destination_;
  ConsoleUi ui_;
};

void tellError(const char* text, const Westring& path) {
  alert(text, path, AlertButtons::Ok, AlertColour::Error);
}

LinkCommand::LinkCommand(Panel& panel, const ChosenItems& items) : panel_(panel), items_(items) {
  context_.base = panel.path;
  context_.other = destinationDirectory(panelOpposite(panel));
  context_.entryName = items.name;
  context_.proposed = addSlash(context_.other);
  if (!items.tagged) context_.proposed += lastComponent(items.name);
}

Westring LinkCommand::line() const {
  if (!items_.tagged) {
    return L"Make symbolic link to " + shortenPath(items_.name, NameWidth) + L" as";
  }
  const int count = static_cast<int>(items_.entries.size());
  Estring text;
  text.format("Make symbolic link%s to ", count > 1 ? "s" : "");
  return Westring(text) + countedFiles(count) + L" in";
}

// Tells what is wrong; the dialog stays then.
bool LinkCommand::accepts(const Westring& text) {
  destination_ = {};
  const int error = trim(text).empty() ? ENOENT : resolveDestination(text, context_, destination_);
  if (items_.tagged) {
    if (error == 0 && isDirectoryPath(destination_.path)) return true;
    tellError("Destination must be a valid directory", error ? text : destination_.path);
    return false;
  }
  if (error == ENAMETOOLONG) {
    static_cast<void>(showError(ui_, error, text));
  } else if (error != 0) {
    tellError("Invalid path", text);
  }
  return error == 0;
}

bool LinkCommand::ask() {
  Westring text = context_.proposed;
  return runCopyDialog({"", line()}, text, context_.other, Toggle::On,
                       [this](const Westring& typed) { return accepts(typed); });
}

void LinkCommand::run() {
  const BreakScope armed;
  if (items_.tagged) {
    linkTagged();
  } else {
    const Westring target = itemPath(panel_, items_.single());
    const bool inside = destination_.asDirectory || isDirectoryPath(destination_.path);
    static_cast<void>(makeLink(
        target, inside ? joinPath(destination_.path, lastComponent(target)) : destination_.path));
  }
  ui_.closeWindows();
  panelRefresh();
}

void LinkCommand::linkTagged() {
  RunningOperation operation(ui_);
  for (entry* item : items_.entries) {
    const Westring target = itemPath(panel_, *item);
    const Outcome outcome = makeLink(target, joinPath(destination_.path, lastComponent(target)));
    if (outcome == Outcome::Done) markDone(panel_, *item);
    if (outcome == Outcome::Cancelled || operation.cancelled()) return;
  }
}

Outcome LinkCommand::makeLink(const Westring& target, const Westring& link) {
  for (;;) {
    if (System::symlink(bytePath(target).c_str(), bytePath(link).c_str()) == 0) {
      return Outcome::Done;
    }
    switch (showError(ui_, errno, target, link)) {
      case ErrorAnswer::Retry:
        break;
      case ErrorAnswer::Cancel:
        return Outcome::Cancelled;
      default:
        return Outcome::Failed;
    }
  }
}

}  // namespace

void linkCommand(Panel& panel) {
  const ChosenItems items = chosenItems(panel, ParentEntry::PassedOver);
  if (items.empty()) return;
  LinkCommand command(panel, items);
  if (command.ask()) command.run();
}
