#include "commander/line_keys.h"

#include "commander/go_commands.h"
#include "console/clipboard.h"
#include "console/key_codes.h"
#include "foundation/names.h"
#include "language/shell_quote.h"
#include "options/options.h"
#include "panels/commands/panel_switch.h"
#include "panels/commands/quick_search.h"
#include "panels/commands/selection.h"

namespace {

Panel& active() {
  return panelPair().active();
}

void clearLine(MainLoop& loop) {
  if (GlobalOptions::EscPanelSwitch && loop.line.empty()) {
    panelsOnOff();
    loop.raise(Redraw::All);
    loop.repaintCursor = true;
    return;
  }
  loop.line.clear();
  active().quickSearch = L"";
  loop.repaintCursor = true;
}

// A name that macros must leave as it is when the line runs.
void insertQuoted(MainLoop& loop, const Westring& quoted) {
  loop.line.insert(doubleLeadChar(quoted));
}

void insertPanelPath(MainLoop& loop, int side) {
  insertQuoted(loop, quoteForShell(addSlash(shownPath(panelPair().side[side]))));
}

// Nothing to name: no list, or no files in it.
bool namesNothing() {
  return bothPanelsOff() || !active().isFiles() || !active().currentEntry();
}

void insertFullPath(MainLoop& loop, bool toClipboard) {
  if (namesNothing()) return;
  Westring path = active().isTreeStyle()
                      ? currentDirectoryOf(active())
                      : joinPath(shownPath(active()), active().currentEntry()->name());
  if (toClipboard) {
    clipboardSetText(path);
  } else {
    insertQuoted(loop, quoteForShell(path));
  }
}

void insertName(MainLoop& loop, bool toClipboard) {
  if (loop.line.cursor() > 0) {
    return loop.line.completeFromHistory(toClipboard ? CommandLine::Direction::Newer
                                                     : CommandLine::Direction::Older);
  }
  if (namesNothing()) return;
  Westring name = active().currentEntry()->name();
  if (toClipboard) {
    clipboardSetText(name);
  } else {
    insertQuoted(loop, quoteNameForShell(name));
  }
}

void insertClipboard(MainLoop& loop) {
  Westring text = clipboardGetText();
  text.replaceAll(L"\r", L"");
  text.replaceAll(L"\n", L"");
  loop.line.insert(text);
}

// On an empty line the keys scroll the long name under the cursor instead.
void lineLeft(MainLoop& loop) {
  Panel& panel = active();
  if (!loop.line.empty() || loop.line.cursor() > 0) return loop.line.moveLeft();
  if (panel.nameOffset >= 1) --panel.nameOffset;
  panel.nameOffsetEntry = panel.currentIndex();
  loop.repaintCursor = true;
}

void lineRight(MainLoop& loop) {
  Panel& panel = active();
  if (!loop.line.empty()) return loop.line.moveRight();
  ++panel.nameOffset;
  panel.nameOffsetEntry = panel.currentIndex();
  loop.repaintCursor = true;
}

bool takeInsertionKey(MainLoop& loop, int key) {
  constexpr int ctrlBracketLeft = 27, ctrlBracketRight = 29;
  constexpr int shiftCtrlF = 0x20006, shiftCtrlJ = 0x2000A;
  bool shift = loop.shiftState & ShiftState::Shift;
  switch (key) {
    case ctrlBracketLeft:
      loop.shiftState& ShiftState::Ctrl ? insertPanelPath(loop, 0) : clearLine(loop);
      return true;
    case ctrlBracketRight:
      insertPanelPath(loop, 1);
      return true;
    case Key::ctrl('f'):
      insertFullPath(loop, shift);
      return true;
    case shiftCtrlF:
      insertFullPath(loop, true);
      return true;
    case Key::CtrlEnter:
      insertName(loop, shift);
      return true;
    case shiftCtrlJ:
    case Key::CtrlShiftEnter:
      insertName(loop, true);
      return true;
    case Key::CtrlInsert:
      clipboardSetText(loop.line.text());
      return true;
    case Key::ShiftInsert:
      insertClipboard(loop);
      return true;
    default:
      return false;
  }
}

bool takeEditKey(MainLoop& loop, int key) {
  CommandLine& line = loop.line;
  switch (key) {
    case Key::ctrl('d'):
    case Key::AltRight:
      active().quickSearch.empty() ? lineRight(loop) : completeSearch(active());
      loop.repaintCursor = true;
      return true;
    case Key::ctrl('s'):
    case Key::AltLeft:
      lineLeft(loop);
      return true;
    case Key::ctrl('e'):
    case Key::CtrlUp:
      line.stepHistory(CommandLine::Direction::Older);
      return true;
    case Key::ctrl('x'):
    case Key::CtrlDown:
      line.stepHistory(CommandLine::Direction::Newer);
      return true;
    case Key::CtrlLeft:
      line.moveWordLeft();
      return true;
    case Key::CtrlRight:
      line.moveWordRight();
      return true;
    case Key::CtrlBackspace:
      line.deleteWordLeft();
      return true;
    case Key::CtrlDelete:
      line.deleteWordRight();
      return true;
    case Key::CtrlHome:
      line.moveHome();
      return true;
    case Key::CtrlEnd:
      line.moveEnd();
      return true;
    case Key::Delete:
      line.deleteCharacter();
      return true;
    case Key::Backspace:
      line.backspace();
      return true;
    default:
      return false;
  }
}

bool takeCharacter(MainLoop& loop, int key) {
  if (key & Key::WideCharacter) return loop.line.insert(key & ~Key::WideCharacter), true;
  if (key < Key::Space || key == Key::CtrlBackspace || key >= Key::ExtendedKey) return false;
  loop.line.insert(static_cast<wchar_t>(key));
  return true;
}

}  // namespace

bool takeLineKey(MainLoop& loop, int key) {
  return takeInsertionKey(loop, key) || takeEditKey(loop, key) || takeCharacter(loop, key);
}
