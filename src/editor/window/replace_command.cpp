
#include <string>

#include "console/console.h"
#include "editor/dialogs/note_window.h"
#include "editor/dialogs/questions.h"
#include "editor/dialogs/search_dialog.h"
#include "editor/window/edit_command.h"
#include "editor/window/search_commands.h"
#include "editor/window/text_editor.h"
#include "foundation/clock.h"
#include "ui/alert.h"

namespace {

constexpr uint32_t PauseMs = 200;  // for which a replacement is seen before the next question

// One run of the replace command, from the cursor on. The view and the cursor come back at its end.
class Replacing {
 public:
  explicit Replacing(CTextEditor& editor)
      : editor_(editor),
        query_(queryOf(searchValues())),
        replacement_(editor.spanOf(searchValues().replacement.data())),
        view_(editor.view) {}
  ~Replacing();
  Replacing(const Replacing&) = delete;
  Replacing& operator=(const Replacing&) = delete;

  void run();

 private:
  SearchEnd findNext();
  bool handleHit();  // false: the end
  void replaceOne();
  void replaceAllFrom();
  void showHit();
  void pause();

  CTextEditor& editor_;
  const SearchQuery query_;
  const TextSpan replacement_;
  const EditorView view_;
  TextPlace place_ = view_.cursor;
  int64_t count_ = 0;
};

Replacing::~Replacing() {
  editor_.dropBlock();
  editor_.view = view_;
  editor_.makeSafe();
  if (count_ > 0) editor_.isModified = true;
}

void Replacing::run() {
  SearchEnd end = SearchEnd::Found;
  while ((end = findNext()) == SearchEnd::Found) {
    if (!handleHit()) return;
  }
  if (end == SearchEnd::NotFound && count_ == 0) alert("String not found", L"");
}

SearchEnd Replacing::findNext() {
  TDEditor::CSearchWatch watch;
  return findText(editor_.document, query_, place_, [&watch] { return watch.pressed(); });
}

bool Replacing::handleHit() {
  showHit();
  switch (TDEditor::askReplace()) {
    case TDEditor::ReplaceAnswer::Replace:
      replaceOne();
      return true;
    case TDEditor::ReplaceAnswer::Skip:
      place_ = stepOn(place_, query_.direction);
      return true;
    case TDEditor::ReplaceAnswer::All:
      replaceAllFrom();
      return false;
    case TDEditor::ReplaceAnswer::Cancel:
    case TDEditor::ReplaceAnswer::ProgramEnds:
      return false;
  }
  return false;
}

// The hit's line stands in the first text row, above the question.
void Replacing::showHit() {
  const TextPlace behind{place_.line, place_.index + std::ssize(query_.text)};
  editor_.view.left = 0;
  editor_.moveTo(place_);
  editor_.scrollTo(place_.line);
  editor_.makeVisible(place_, behind);
  editor_.setBlock(place_, behind, TextBlock::CursorAt::Start);
  editor_.redraw();
  editor_.paint();
}

void Replacing::replaceOne() {
  editor_.dropBlock();
  place_ = replaceHit(editor_.document, editor_.history, query_, replacement_, place_);
  ++count_;
  editor_.redraw();
  editor_.paint();
  pause();
}

void Replacing::pause() {
  console->completePainting();
  EventSem nobodyPosts;
  systemClock().wait(nobodyPosts, PauseMs);
}

void Replacing::replaceAllFrom() {
  editor_.dropBlock();
  {
    TDEditor::CSearchWatch watch;
    const ReplaceAllResult result =
        replaceAll(editor_.document, editor_.history, query_, replacement_, place_,
                   editor_.history.newReplaceAll(), [&watch] { return watch.pressed(); });
    count_ += result.count;
  }
  editor_.redraw();
  editor_.paint();
  alert((std::to_string(count_) + " replacements").c_str(), L"");
}

void replace(CTextEditor& editor) {
  if (!TDEditor::askSearch(searchValues(), TDEditor::SearchDialogUse::Replace)) return;
  if (!searchValues().text.empty()) Replacing(editor).run();
}

}  // namespace

EditCommands replaceCommands() {
  return {{"Replace", {Key::F8}, replace, {.asks = Asks::Yes}}};
}
