#include "filecommands/confirmations.h"

#include <algorithm>
#include <cstring>

#include "console/key_codes.h"
#include "foundation/fold.h"
#include "foundation/text_format.h"
#include "foundation/utf8.h"
#include "language/environment.h"
#include "options/colours.h"
#include "options/options.h"
#include "ui/dialog.h"

namespace {

constexpr int UpperQuarter = -4;
constexpr int WindowRows = 6;
constexpr int FrameAndMargin = 4;
constexpr int LeastWidth = 21;
constexpr int PathWidth = 70;
constexpr int ButtonRow = 3;
constexpr int ButtonsWidth = 18, ButtonsWidthWithBox = 36;
constexpr int CancelBehindOk = 8, BoxBehindOk = 20;
constexpr int WarningButtonsWidth = 16, WarningCancelBehindOk = 9;
constexpr int PathStart = 3;  // characters of the path that are looked up

// The question before a tree goes.
constexpr int TreeLeastWidth = 27;
constexpr int TreeWindowRows = 7;
constexpr int AnswerRow = 4;
constexpr int YesLength = 3;
constexpr wchar_t YesWord[] = L"YES";
constexpr Key::Code Accept = 'y', AcceptAll = 'a', Refuse = 'n';

constexpr int OkBeforeMiddle = 14, CancelBeforeMiddle = 6, AllBehindMiddle = 6;
constexpr int LabelBeforeMiddle = 8, FieldBehindMiddle = 5, FieldWidth = 4;

int outerWidth(int widest) {
  return widest + (widest & 1) + FrameAndMargin;
}

bool confirmed(Dialog& dialog) {
  dialog.addExitKey(Key::F10);
  return dialog.run() == Key::Enter;
}

int buttonsWidth(UndeleteBox box) {
  return box == UndeleteBox::Shown ? ButtonsWidthWithBox : ButtonsWidth;
}

// Two lines of text over OK, Cancel and perhaps the check box.
bool askInBox(const Westring& first, const Westring& second, UndeleteBox box) {
  const int widest = std::max({LeastWidth, buttonsWidth(box), first.length(), second.length()});
  Dialog dialog(-1, UpperQuarter, outerWidth(widest), WindowRows, colourOf(Colour::Messages));
  dialog.putCentred(0, first.data());
  dialog.putCentred(1, second.data());
  const int start = (dialog.innerWidth() - buttonsWidth(box)) / 2;
  dialog.addButton(start, ButtonRow, Group::New, Key::Enter, "OK");
  dialog.addButton(start + CancelBehindOk, ButtonRow, Group::Same, Key::Esc, "Cancel");
  if (box == UndeleteBox::Shown) {
    dialog.addCheck(start + BoxBehindOk, ButtonRow, Group::New, &noUndelete(), "No Undelete");
  }
  return confirmed(dialog);
}

TreeAnswer runButtons(Dialog& dialog, int middle) {
  dialog.addButton(middle - OkBeforeMiddle, AnswerRow, Group::New, Accept, "OK");
  const int cancel =
      dialog.addButton(middle - CancelBeforeMiddle, AnswerRow, Group::Same, Refuse, "Cancel");
  dialog.addButton(middle + AllBehindMiddle, AnswerRow, Group::Same, AcceptAll, "All");
  dialog.addExitKey(Key::F10);
  dialog.setFocus(cancel);
  switch (dialog.run()) {
    case Accept:
      return TreeAnswer::Yes;
    case AcceptAll:
      return TreeAnswer::All;
    default:
      return TreeAnswer::No;
  }
}

TreeAnswer runTyped(Dialog& dialog, int middle, Westring& typed) {
  dialog.put(middle - LabelBeforeMiddle, AnswerRow, L"Type \"YES\"");
  dialog.addString(middle + FieldBehindMiddle, AnswerRow, Group::New, &typed, FieldWidth,
                   FieldWidth);
  dialog.addExitKey(Key::F10);
  const bool entered = dialog.run() == Key::Enter;
  const bool fits = typed.length() == YesLength && sameWord(typed.data(), YesWord);
  return entered && fits ? TreeAnswer::Yes : TreeAnswer::No;
}

}  // namespace

UndeleteBox undeleteBoxFor(const Westring& panelPath) {
  const char* listed = sessionEnvironment().get("DELDIR");
  if (!listed || !*listed) return UndeleteBox::Hidden;
  const Estring start = toUtf8(left(panelPath, PathStart));
  return strstr(listed, start.data()) ? UndeleteBox::Shown : UndeleteBox::Hidden;
}

bool& noUndelete() {
  static bool value = false;
  return value;
}

bool askDelete(const Westring& name, UndeleteBox box) {
  return askInBox(L"Do you wish to delete", shortenPath(name, PathWidth), box);
}

bool askDeleteTagged(int count, UndeleteBox box) {
  Estring text;
  text.format("You have selected %d file%s", count, count > 1 ? "s" : "");
  return askInBox(Westring(text), L"Delete?", box);
}

bool askDeleteTaggedAgain(int count, const Westring& directory) {
  Estring number;
  number.format("You are deleting %d selected files from", count);
  const Westring text(number);
  const Westring path = shortenPath(directory, PathWidth);
  const int widest = std::max({LeastWidth, text.length(), path.length()});
  Dialog dialog(-1, UpperQuarter, outerWidth(widest), WindowRows, colourOf(Colour::Errors));
  dialog.putCentred(0, text.data());
  dialog.putCentred(1, path.data());
  const int start = (dialog.innerWidth() - WarningButtonsWidth) / 2;
  dialog.addButton(start, ButtonRow, Group::New, Key::Enter, "OK");
  dialog.addButton(start + WarningCancelBehindOk, ButtonRow, Group::Same, Key::Esc, "Cancel");
  return confirmed(dialog);
}

TreeAnswer askTreeQuestion(const Westring& path) {
  const Westring shown = shortenPath(path, PathWidth);
  const int widest = std::max(TreeLeastWidth, shown.length());
  Westring typed;  // outlives the dialog that edits it
  Dialog dialog(-1, UpperQuarter, outerWidth(widest), TreeWindowRows, colourOf(Colour::Errors));
  dialog.putCentred(0, L"Directory");
  dialog.putCentred(1, shown.data());
  dialog.putCentred(2, L"is not empty");
  dialog.putCentred(3, L"Delete tree?");
  const int middle = dialog.innerWidth() / 2;
  const bool buttons = GlobalOptions::Confirmations & ConfirmationOff::TypedYes;
  return buttons ? runButtons(dialog, middle) : runTyped(dialog, middle, typed);
}
