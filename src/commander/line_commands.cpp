#include "commander/command_rooms.h"
#include "commander/go_commands.h"
#include "console/clipboard.h"
#include "filecommands/entry_path.h"
#include "foundation/names.h"
#include "language/shell_quote.h"
#include "panels/commands/panel_switch.h"
#include "panels/commands/quick_search.h"

namespace {

Panel& active() {
  return panelPair().active();
}

// ---- moving and editing

// A step of the line's own.
Action editing(void (CommandLine::*step)()) {
  return [step](MainLoop& loop) { (loop.line.*step)(); };
}

Action stepping(CommandLine::Direction direction) {
  return [direction](MainLoop& loop) { loop.line.stepHistory(direction); };
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
  loop.repaintCursor = true;
  if (!loop.line.empty()) return loop.line.moveRight();
  ++panel.nameOffset;
  panel.nameOffsetEntry = panel.currentIndex();
}

void lengthenSearch(MainLoop& loop) {
  completeSearch(active());
  loop.repaintCursor = true;
}

void takePanelsOff(MainLoop& loop) {
  panelsOnOff();
  loop.raise(Redraw::All);
  loop.repaintCursor = true;
}

void clearLine(MainLoop& loop) {
  loop.line.clear();
  active().quickSearch = L"";
  loop.repaintCursor = true;
}

// ---- names and texts put on the line

// A name that macros must leave as it is when the line runs.
void insertQuoted(MainLoop& loop, const Westring& quoted) {
  loop.line.insert(doubleLeadChar(quoted));
}

Action insertingPath(int side) {
  return [side](MainLoop& loop) {
    insertQuoted(loop, quoteForShell(addSlash(shownPath(panelPair().side[side]))));
  };
}

Westring currentPath() {
  Panel& panel = active();
  return panel.isTreeStyle() ? currentDirectoryOf(panel)
                             : joinPath(shownPath(panel), panel.currentEntry()->name());
}

void insertFullPath(MainLoop& loop) {
  insertQuoted(loop, quoteForShell(currentPath()));
}

void copyFullPath() {
  clipboardSetText(currentPath());
}

void insertName(MainLoop& loop) {
  insertQuoted(loop, quoteNameForShell(active().currentEntry()->name()));
}

void copyName() {
  clipboardSetText(Westring(active().currentEntry()->name()));
}

Action completing(CommandLine::Direction direction) {
  return [direction](MainLoop& loop) { loop.line.completeFromHistory(direction); };
}

void copyLine(MainLoop& loop) {
  clipboardSetText(loop.line.text());
}

void insertClipboard(MainLoop& loop) {
  Westring text = clipboardGetText();
  text.replaceAll(L"\r", L"");
  text.replaceAll(L"\n", L"");
  loop.line.insert(text);
}

void insertStar(MainLoop& loop) {
  loop.line.insert(L'*');
}

// ---- the rows

constexpr auto Older = CommandLine::Direction::Older, Newer = CommandLine::Direction::Newer;

std::vector<Command> editingRows() {
  using enum When;
  return {
      {.name = "Complete the search",
       .codes = {Key::ctrl('d'), Key::AltRight, Key::Right},
       .when = Searching,
       .run = lengthenSearch},
      {.name = "Line right",
       .codes = {Key::ctrl('d'), Key::AltRight, Key::Right},
       .run = lineRight},
      {.name = "Line left", .codes = {Key::ctrl('s'), Key::AltLeft, Key::Left}, .run = lineLeft},
      {.name = "Older command",
       .codes = {Key::ctrl('e'), Key::CtrlUp, Key::Up},
       .run = stepping(Older)},
      {.name = "Newer command",
       .codes = {Key::ctrl('x'), Key::CtrlDown, Key::Down},
       .run = stepping(Newer)},
      {.name = "Word left", .codes = {Key::CtrlLeft}, .run = editing(&CommandLine::moveWordLeft)},
      {.name = "Word right",
       .codes = {Key::CtrlRight},
       .run = editing(&CommandLine::moveWordRight)},
      {.name = "Line's start",
       .codes = {Key::CtrlHome, Key::Home},
       .run = editing(&CommandLine::moveHome)},
      {.name = "Line's end",
       .codes = {Key::CtrlEnd, Key::End},
       .run = editing(&CommandLine::moveEnd)},
      {.name = "Delete the word left",
       .codes = {Key::CtrlBackspace},
       .run = editing(&CommandLine::deleteWordLeft)},
      {.name = "Delete the word right",
       .codes = {Key::CtrlDelete},
       .run = editing(&CommandLine::deleteWordRight)},
      {.name = "Delete the character",
       .codes = {Key::Delete},
       .run = editing(&CommandLine::deleteCharacter)},
      {.name = "Delete the character left",
       .codes = {Key::Backspace},
       .run = editing(&CommandLine::backspace)},
  };
}

std::vector<Command> insertionRows() {
  using enum When;
  // The code of Ctrl with a letter tells Shift apart only from some keyboards.
  const std::vector<Key::Code> nameKeys{Key::CtrlEnter, Key::CtrlScanEnter, Key::CtrlScanJ};
  const std::vector<Key::Code> anyNameKey{
      Key::CtrlEnter,  Key::CtrlScanEnter,      Key::CtrlScanJ,     Key::CtrlShiftEnter,
      Key::CtrlShiftJ, Key::CtrlShiftScanEnter, Key::CtrlShiftScanJ};
  const std::vector<Key::Code> pathKeys{Key::ctrl('f'), Key::CtrlScanF};
  const std::vector<Key::Code> anyPathKey{Key::ctrl('f'), Key::CtrlScanF, Key::CtrlShiftF,
                                          Key::CtrlShiftScanF};
  constexpr When NamesSomething = PanelsOn | Files | Entry;
  return {
      {.name = "Complete from newer commands",
       .codes = anyNameKey,
       .when = TextBeforeCursor | ShiftHeld,
       .run = completing(Newer)},
      {.name = "Complete from older commands",
       .codes = nameKeys,
       .when = TextBeforeCursor,
       .run = completing(Older)},
      {.name = "Copy the name",
       .codes = anyNameKey,
       .when = NamesSomething | ShiftHeld,
       .run = copyName},
      {.name = "Insert the name", .codes = nameKeys, .when = NamesSomething, .run = insertName},
      {.name = "Copy the full path",
       .codes = anyPathKey,
       .when = NamesSomething | ShiftHeld,
       .run = copyFullPath},
      {.name = "Insert the full path",
       .codes = pathKeys,
       .when = NamesSomething,
       .run = insertFullPath},
      {.name = "Insert the left path",
       .codes = {Key::Esc, Key::CtrlScanBracketLeft},
       .when = CtrlHeld,
       .run = insertingPath(0)},
      {.name = "Insert the right path", .codes = {Key::CtrlBracketRight}, .run = insertingPath(1)},
      {.name = "Copy the line", .codes = {Key::CtrlInsert}, .run = copyLine},
      {.name = "Insert the clipboard", .codes = {Key::ShiftInsert}, .run = insertClipboard},
      {.name = "Insert a star", .codes = {Key::GrayStar}, .when = StarIsText, .run = insertStar},
  };
}

std::vector<Command> clearingRows() {
  using enum When;
  return {
      {.name = "Take the panels off",
       .codes = {Key::Esc},
       .when = EscTakesPanels | LineEmpty,
       .run = takePanelsOff},
      {.name = "Clear the line", .codes = {Key::Esc}, .run = clearLine},
  };
}

}  // namespace

std::vector<Command> lineCommands() {
  return joined({insertionRows(), editingRows(), clearingRows()});
}
