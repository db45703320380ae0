#include "tools/command_history_window.h"

#include "console/key_codes.h"
#include "history/history_store.h"
#include "options/colours.h"
#include "shell/execute_line.h"
#include "tools/history_dialog.h"
#include "ui/alert.h"

namespace {

constexpr char Title[] = " History ";
constexpr int LeastWidth = 10;
constexpr int Older = -1, Newer = 1;

struct Choice {
  HistoryOutcome outcome = HistoryOutcome::Nothing;
  Separate separate = Separate::No;
  Westring command;
};

// What was looked for last in this run of the program.
Westring& searchText() {
  static Westring text;
  return text;
}

bool askSearchText() {
  constexpr int centred = -1, inTheMiddle = -2, width = 67, height = 3;
  constexpr int labelColumn = 1, fieldColumn = 9, fieldWidth = 55, longest = 511, row = 0;
  Westring text = searchText();
  Dialog dialog(centred, inTheMiddle, width, height, colourOf(Colour::Messages));
  dialog.addText(labelColumn, row, "Search:");
  dialog.addString(fieldColumn, row, Group::New, &text, fieldWidth, longest,
                   FieldHistory::SearchText);
  if (dialog.run() != Key::Enter || text.empty()) return false;
  searchText() = text;
  return true;
}

void search(HistoryDialog& window, int from, int step) {
  const int found = findInHistory(commandHistory(), searchText(), from, step);
  if (found >= 0) return window.select(found);
  alert("String not found", searchText());
}

// A repeated search without one before asks for its text first.
void searchAgain(HistoryDialog& window, int step) {
  if (searchText().empty() && !askSearchText()) return;
  search(window, window.selected() + step, step);
}

Choice choose(const std::function<void()>& help) {
  HistoryDialog window(Title, commandHistory(), LeastWidth);
  for (const Key::Code key : {Key::AltEnter, Key::CtrlEnter, Key::CtrlScanEnter, Key::F1, Key::F7,
                              Key::ShiftF7, Key::AltF7}) {
    window.addExitKey(key);
  }
  for (;;) {
    const Key::Code key = window.run();
    const Westring* command = commandHistory().peek(window.selected());
    switch (key) {
      case Key::Enter:
        return {HistoryOutcome::Run, Separate::No, *command};
      case Key::AltEnter:
        return {HistoryOutcome::Run, Separate::Yes, *command};
      case Key::CtrlEnter:
      case Key::CtrlScanEnter:
        return {HistoryOutcome::PutOnLine, Separate::No, *command};
      case Key::F1:
        help();
        break;
      case Key::F7:
        if (askSearchText()) search(window, window.selected(), Older);
        break;
      case Key::ShiftF7:
        searchAgain(window, Older);
        break;
      case Key::AltF7:
        searchAgain(window, Newer);
        break;
      default:
        return {};
    }
  }
}

}  // namespace

int findInHistory(const FnStringStore& texts, const Westring& part, int from, int step) {
  for (int i = from; i >= 0 && i < texts.count(); i += step) {
    if (texts.peek(i)->find(part) >= 0) return i;
  }
  return -1;
}

HistoryOutcome commandHistoryWindow(Westring& command, const std::function<void()>& help) {
  if (commandHistory().count() == 0) return HistoryOutcome::Nothing;
  // The window is gone when the command runs.
  const Choice choice = choose(help);
  command = choice.command;
  if (choice.outcome != HistoryOutcome::Run) return choice.outcome;
  const bool taken = executeLine(command, choice.separate) == LineOutcome::Taken;
  return taken ? HistoryOutcome::Run : HistoryOutcome::PutOnLine;
}
