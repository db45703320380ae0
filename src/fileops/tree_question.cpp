#include "fileops/tree_question.h"

#include <algorithm>

#include "config/colours.h"
#include "config/options.h"
#include "console/key_codes.h"
#include "foundation/fold.h"
#include "foundation/text_format.h"
#include "ui/dialog.h"

namespace {

constexpr int PathWidth = 70;
constexpr int LeastWidth = 27;
constexpr int FrameAndMargin = 4;
constexpr int WindowRows = 7;
constexpr int UpperQuarter = -4;
constexpr int AnswerRow = 4;
constexpr int YesLength = 3;
constexpr wchar_t YesWord[] = L"YES";
constexpr int Refuse = 'n';

constexpr int OkBeforeMiddle = 14, CancelBeforeMiddle = 6, AllBehindMiddle = 6;
constexpr int LabelBeforeMiddle = 8, FieldBehindMiddle = 5, FieldWidth = 4;

TreeAnswer runButtons(Dialog& dialog, int middle) {
  dialog.addButton(middle - OkBeforeMiddle, AnswerRow, Group::New, Answer::Yes, "OK");
  const int cancel =
      dialog.addButton(middle - CancelBeforeMiddle, AnswerRow, Group::Same, Refuse, "Cancel");
  dialog.addButton(middle + AllBehindMiddle, AnswerRow, Group::Same, Answer::All, "All");
  dialog.addExitKey(Key::F10);
  dialog.setFocus(cancel);
  switch (dialog.run()) {
    case Answer::Yes:
      return TreeAnswer::Yes;
    case Answer::All:
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
  const bool fits = typed.length() == YesLength && compareNoCase(typed.data(), YesWord) == 0;
  return entered && fits ? TreeAnswer::Yes : TreeAnswer::No;
}

}  // namespace

TreeAnswer askTreeQuestion(const Westring& path) {
  const Westring shown = shortenPath(path, PathWidth);
  const int widest = std::max(LeastWidth, shown.length());
  Westring typed;  // outlives the dialog that edits it
  Dialog dialog(-1, UpperQuarter, widest + (widest & 1) + FrameAndMargin, WindowRows,
                colourOf(Colour::Errors));
  dialog.putCentred(0, L"Directory");
  dialog.putCentred(1, shown.data());
  dialog.putCentred(2, L"is not empty");
  dialog.putCentred(3, L"Delete tree?");
  const int middle = dialog.innerWidth() / 2;
  const bool buttons = GlobalOptions::Confirmations & ConfirmationOff::TypedYes;
  return buttons ? runButtons(dialog, middle) : runTyped(dialog, middle, typed);
}
