#include "search_dialogs/find_dialog.h"

#include <memory>
#include <string>

#include "foundation/clock.h"
#include "foundation/text_format.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/model/panel_pair.h"
#include "search_dialogs/entry_list_box.h"

namespace {

constexpr int Top = 2, RowsBelow = 4, ColumnsBeside = 4, RowsAround = 7;
// Rows counted from the interior's end.
constexpr int StatusUp = 11, LabelsUp = 8, FieldsUp = 7, BoxesUp = 5, ButtonsUp = 1;
constexpr int LeftColumn = 1, RightColumn = 39, FieldWidth = 34, AnyLength = -1;
constexpr int DrivesColumn = 14, DrivesWidth = 21, DrivesLength = 26;
constexpr int StatusColumn = 1, SummaryColumn = 18, DirectoryColumn = 12, BesideDirectory = 13;
constexpr char FilesHotKey[] = "i", TextHotKey[] = "T";
constexpr int64_t BlinkNs = 500'000'000;

constexpr Key::Code ExitKeys[] = {Key::F5,         Key::F6,         Key::F8,      Key::AltF3,
                                  Key::AltF4,      Key::Delete,     Key::ShiftF8, Key::CtrlF3,
                                  Key::CtrlF4,     Key::CtrlF5,     Key::CtrlF6,  Key::CtrlShiftF,
                                  Key::CtrlShiftJ, FindKey::Replace};

}  // namespace

Westring findSummary(FindState state, int count, uint64_t bytes) {
  const bool complete = state == FindState::Complete;
  Westring line = padRight(Westring(complete ? L"Search Complete:" : L"Search Stopped:"),
                           SummaryColumn - StatusColumn);
  line += Westring(std::to_wstring(count).c_str());
  line += count == 1 ? L" match uses " : L" matches use ";
  return line + groupDigits(bytes) + L" bytes";
}

FindDialog::FindDialog(FindTexts& texts, int* current, Begin begin)
    : Dialog(-1, Top, panelPair().screenColumns - ColumnsBeside,
             panelPair().screenLines - RowsBelow, colourOf(Colour::Messages)),
      current_(current),
      rows_(panelPair().screenLines - RowsAround) {
  putFrameTitle(" File Find ");
  putHotKeys(LeftColumn, rows_ - LabelsUp, "File(s) to find:", FilesHotKey);
  putHotKeys(RightColumn, rows_ - LabelsUp, "Containing:", TextHotKey);
  auto box = std::make_unique<EntryListBox>(*this, 0, 0, Group::New, innerWidth(), rows_ - StatusUp,
                                            foundEntries(), current_, FindKey::GoTo,
                                            [this] { takeNews(); });
  box_ = box.get();
  list_ = add(std::move(box));
  shown_ = begin == Begin::InList ? foundEntries().count() : 0;
  box_->setCount(shown_);
  addFields(texts);
  addButtons();
  for (const Key::Code key : ExitKeys) addExitKey(key);
  redraw(-1);
  if (begin == Begin::InFields) setFocus(list_ + 1);
}

void FindDialog::addFields(FindTexts& texts) {
  const int fields = rows_ - FieldsUp;
  const int boxes = rows_ - BoxesUp;
  const int files = addString(LeftColumn, fields, Group::New, &texts.files, FieldWidth, AnyLength,
                              FieldHistory::FindFiles);
  const int text = addString(RightColumn, fields, Group::New, &texts.text, FieldWidth, AnyLength,
                             FieldHistory::FindText);
  addCheck(LeftColumn, boxes, Group::New, &GlobalOptions::FFRootSearch, "Start at Root");
  addCheck(LeftColumn, boxes + 1, Group::Same, &GlobalOptions::FFRecurse, "Scan subdirectories");
  addCheck(LeftColumn, boxes + 2, Group::Same, &GlobalOptions::FFMultiDrive, "Drives:");
  addString(DrivesColumn, boxes + 2, Group::New, &texts.drives, DrivesWidth, DrivesLength);
  addCheck(RightColumn, boxes, Group::New, &GlobalOptions::FFCase, "Case sensitive");
  addCheck(RightColumn, boxes + 1, Group::Same, &GlobalOptions::FFWholeWord, "Whole Word");
  std::string hotChars(static_cast<size_t>(text) + 1, '\0');
  hotChars[static_cast<size_t>(files)] = FilesHotKey[0];
  hotChars[static_cast<size_t>(text)] = TextHotKey[0];
  setHotChars(hotChars.data(), static_cast<int>(hotChars.size()));
}

void FindDialog::addButtons() {
  struct Button {
    int column;
    Key::Code code;
    const char* text;
  };
  constexpr Button Buttons[] = {{7, FindKey::Find, "Find"}, {17, Key::Esc, "Cancel"},
                                {29, Key::F1, "Help"},      {39, FindKey::GoTo, "GoTo"},
                                {49, Key::F3, "View"},      {59, Key::F4, "Edit"}};
  Group group = Group::New;
  for (const Button& button : Buttons) {
    addButton(button.column, rows_ - ButtonsUp, group, button.code, button.text);
    group = Group::Same;
  }
}

void FindDialog::follow(FindRun* run) {
  run_ = run;
  toldFull_ = false;
  if (!run) return;
  followsLast_ = true;
  *current_ = 0;
  listChanged();
}

void FindDialog::news() {
  sendMessage(list_, {.kind = MessageKind::ListLength});
}

void FindDialog::takeNews() {
  BatchScope batch;
  const int count = foundEntries().count();
  if (count != shown_) {
    const bool atLast = *current_ >= shown_ - 1;
    followsLast_ = followsLast_ && atLast;
    if (followsLast_) *current_ = count - 1;
    shown_ = count;
    box_->setCount(count);
  }
  showStatus();
  if (run_ && run_->state() == FindState::Full && !toldFull_) {
    toldFull_ = true;
    setExitCode(FindKey::TooMany);
  }
}

void FindDialog::listChanged() {
  shown_ = foundEntries().count();
  box_->setCount(shown_);
  sendMessage(list_, {.kind = MessageKind::ListContent});
  showStatus();
}

void FindDialog::showStatus() {
  if (!run_) return;
  if (run_->state() != FindState::Running) {
    return putStatus(findSummary(run_->state(), shown_, foundEntries().bytes()));
  }
  if (run_->isWaiting()) return putStatus(L"Waiting for file system");
  const bool lit = systemClock().nanoseconds() / BlinkNs % 2 == 0;
  const int width = innerWidth() - BesideDirectory;
  const Westring directory = shortenPath(decodeFileName(run_->directory().c_str()), width);
  putStatus(padRight(Westring(lit ? L"Searching:" : L""), DirectoryColumn - StatusColumn) +
            directory);
}

void FindDialog::putStatus(const Westring& text) {
  put(StatusColumn, rows_ - StatusUp, padRight(text, innerWidth() - StatusColumn));
}
