#include "filecommands/console_ui.h"

#include "console/input.h"
#include "filecommands/confirmations.h"
#include "foundation/utf8.h"
#include "panels/model/directory_tree.h"
#include "panels/model/panel_pair.h"
#include "ui/alert.h"

namespace {

// Keeps the repaint thread at rest for a scope.
class Quiet {
 public:
  explicit Quiet(CopyProgress* progress) : progress_(progress) {
    if (progress_) progress_->pause();
  }
  ~Quiet() {
    if (progress_) progress_->resume();
  }
  Quiet(const Quiet&) = delete;
  Quiet& operator=(const Quiet&) = delete;

 private:
  CopyProgress* progress_;
};

}  // namespace

void ConsoleUi::watch(ProgressRecord& record, CClock& clock) {
  progress_ = std::make_unique<CopyProgress>(record, clock);
}

void ConsoleUi::closeWindows() {
  deleteWindow_.close();
  progress_.reset();
}

int ConsoleUi::ask(const Westring& text, const Westring& caption, AlertButtons buttons,
                   AlertColour colour) {
  if (progress_) progress_->complete();
  deleteWindow_.complete();
  const Quiet quiet(progress_.get());
  const int answer = alert(text, caption, buttons, colour);
  // The end of the program ends the command, and nothing is done that wasn't allowed.
  return answer == Answer::ProgramEnds ? Answer::Cancel : answer;
}

TreeAnswer ConsoleUi::askDeleteTree(const Westring& path) {
  deleteWindow_.complete();
  const Quiet quiet(progress_.get());
  return askTreeQuestion(path);
}

bool ConsoleUi::escapePressed() {
  return ::escapePressed();
}

void ConsoleUi::itemStarted(TransferKind kind, const char* source, const char* target, int index,
                            int count) {
  if (progress_) progress_->showItem(kind, source, target, index, count);
}

void ConsoleUi::itemsDone(int index, int count) {
  if (progress_) progress_->showItemsDone(index, count);
}

void ConsoleUi::working() {
  if (progress_) progress_->working();
}

void ConsoleUi::deleting(const char* path, DeleteWindowUse window) {
  deleteWindow_.show(path, window);
}

void ConsoleUi::deletingDone() {
  deleteWindow_.close();
}

void ConsoleUi::directoryGone(const char* path) {
  directoryTree()->removed(decodeFileName(path));
}
