#include "commander/key_commands.h"

#include "commander/command_seams.h"
#include "commander/execute_line.h"
#include "commander/exit_program.h"
#include "commander/file_dialogs.h"
#include "commander/go_commands.h"
#include "commander/line_keys.h"
#include "commander/menu_bar.h"
#include "commander/menu_codes.h"
#include "commander/option_toggles.h"
#include "commander/screen_size.h"
#include "commander/view_edit.h"
#include "console/key_codes.h"
#include "filecommands/commands.h"
#include "foundation/names.h"
#include "options/options.h"
#include "panels/commands/navigation.h"
#include "panels/commands/panel_sort.h"
#include "panels/commands/panel_switch.h"
#include "panels/commands/quick_search.h"
#include "panels/commands/selection.h"
#include "panels/model/entry_order.h"
#include "panels/picture/panel_draw.h"
#include "panels/picture/panel_title.h"
#include "panels/picture/status_line.h"

namespace {

Panel& active() {
  return panelPair().active();
}
bool shiftHeld(const MainLoop& loop) {
  return loop.shiftState & ShiftState::Shift;
}

// ---- when a key does nothing

bool listsFiles() {
  return !bothPanelsOff() && active().isFiles();
}
bool listsRealFiles() {
  return listsFiles() && !active().archive;
}

// ---- the list under the cursor

void moveInList(void (*move)(Panel&)) {
  move(active());
  active().quickSearch = L"";
}

void up(Panel& panel) {
  moveCursor(panel, -1);
}
void down(Panel& panel) {
  moveCursor(panel, 1);
}

void tagAndStep() {
  Panel& panel = active();
  if (bothPanelsOff() || panel.count() == 0) return;
  toggleTag(panel, panel.currentIndex(), TagMode::Flip);
  moveCursor(panel, 1);
}

bool hasColumns() {
  return active().isFiles() && isMultiColumn(active());
}

bool takeRowKey(MainLoop& loop, int key) {
  loop.raise(Redraw::CommandRow);
  return takeLineKey(loop, key);
}

bool takeListKey(MainLoop& loop, int key) {
  bool off = bothPanelsOff();
  switch (key) {
    case Key::Up:
      off ? loop.line.stepHistory(CommandLine::Direction::Older) : moveInList(up);
      break;
    case Key::Down:
      off ? loop.line.stepHistory(CommandLine::Direction::Newer) : moveInList(down);
      break;
    case Key::Home:
      off ? loop.line.moveHome() : moveInList(cursorHome);
      break;
    case Key::End:
      off ? loop.line.moveEnd() : moveInList(cursorEnd);
      break;
    case Key::PageUp:
      if (!off) moveInList(cursorPageUp);
      break;
    case Key::PageDown:
      if (!off) moveInList(cursorPageDown);
      break;
    case Key::Left:
      if (off || !hasColumns()) return takeRowKey(loop, Key::AltLeft);
      moveInList(cursorColumnLeft);
      break;
    case Key::Right:
      if (off || !hasColumns()) return takeRowKey(loop, Key::AltRight);
      moveInList(cursorColumnRight);
      break;
    case Key::Insert:
      tagAndStep();
      break;
    default:
      return false;
  }
  if (off) loop.raise(Redraw::CommandRow);
  return true;
}

// ---- selection and quick search

void groupSelect(const MainLoop& loop, TagMode mode) {
  if (listsFiles()) groupSelectDialog(active(), mode, loop.shiftState);
}

void selectEvery(const MainLoop& loop, TagMode mode) {
  if (listsFiles()) selectAll(active(), mode, loop.shiftState);
}

void searchStep(MainLoop& loop, int key, int direction) {
  if (bothPanelsOff()) return;
  loop.pendingKey = quickSearchStep(active(), key, direction, loop.pendingMouse);
}

void stepOrTagged(MainLoop& loop, int key, int direction) {
  Panel& panel = active();
  drawCursor(panelPair().activeSide, CursorBar::Off);
  if (!panel.quickSearch.empty()) return searchStep(loop, key, direction);
  cursorToTagged(panel, direction);
}

bool takeSelectionKey(MainLoop& loop, int key) {
  switch (key) {
    case Key::GrayPlus:
    case MenuCode::SelectGroup:
    case Key::ctrl('t'):
      groupSelect(loop, TagMode::Tag);
      return true;
    case Key::GrayMinus:
    case MenuCode::UnselectGroup:
    case Key::ctrl('y'):
      groupSelect(loop, TagMode::Untag);
      return true;
    case Key::GrayStar:
      if (GlobalOptions::DisableInvert) return takeRowKey(loop, L'*');
      [[fallthrough]];
    case MenuCode::InvertSelection:
      selectEvery(loop, TagMode::Flip);
      return true;
    case Key::CtrlGrayPlus:
    case Key::CtrlShiftGrayPlus:
      selectEvery(loop, TagMode::Tag);
      return true;
    case Key::CtrlGrayMinus:
    case Key::CtrlShiftGrayMinus:
      selectEvery(loop, TagMode::Untag);
      return true;
    case Key::AltGrayPlus:
    case MenuCode::RestoreSelection:
      restoreSelection(active());
      return true;
    case Key::AltUp:
      stepOrTagged(loop, key, -1);
      return true;
    case Key::AltDown:
      stepOrTagged(loop, key, 1);
      return true;
    case Key::AltBackspace:
      removeLastSearchCharacter(active());
      return true;
    default:
      return false;
  }
}

// ---- file commands

void copyOrMove(int flags) {
  if (!listsFiles()) return;
  Panel& other = panelPair().inactive();
  bool archived = active().archive || (other.showing && other.isFiles() && other.archive);
  if (archived) {
    if (commandSeams().archiveCopy) commandSeams().archiveCopy(active(), flags);
    return;
  }
  copyCommand(active(), flags);
}

void copyUnderName(int flags) {
  if (listsRealFiles()) copyCommand(active(), flags | CopyFlag::BareName);
}

// NOLINTNEXTLINE(readability-function-size): one call a key, read as a table
bool takeFileKey(MainLoop&, int key) {
  CommandSeams& seams = commandSeams();
  Panel& panel = active();
  switch (key) {
    case Key::F3:
      viewCommand(Program::First);
      return true;
    case Key::AltF3:
      viewCommand(Program::Second);
      return true;
    case Key::F4:
      editCommand(Program::First);
      return true;
    case Key::AltF4:
      editCommand(Program::Second);
      return true;
    case Key::ShiftF3:
      if (!panel.archive) viewNamedFile();
      return true;
    case Key::ShiftF4:
      if (!panel.archive) editNamedFile();
      return true;
    case Key::F5:
      copyOrMove(0);
      return true;
    case Key::F6:
      copyOrMove(CopyFlag::Move);
      return true;
    case Key::ShiftF5:
      copyUnderName(0);
      return true;
    case Key::ShiftF6:
      copyUnderName(CopyFlag::Move);
      return true;
    case Key::F7:
      if (!panel.archive) makeDirectoryCommand(panelPair().activeSide);
      return true;
    case Key::F8:
      if (listsFiles()) deleteCommand(panel);
      return true;
    case Key::ShiftF8:
      deleteByNameCommand(panel);
      return true;
    case Key::CtrlShiftF5:
      if (listsRealFiles()) callSeam(seams.makeSymbolicLink, panel);
      return true;
    case Key::ShiftF7:
      callSeam(seams.compressIntoArchive, panel);
      return true;
    case Key::AltF7:
      callSeam(seams.fileFind, panelPair().activeSide, false);
      return true;
    case Key::shifted(0x6E):
      callSeam(seams.fileFind, panelPair().activeSide, true);
      return true;
    case Key::AltF6:
      callSeam(seams.makeObjects, panel);
      return true;
    case Key::ctrl('a'):
      if (!panel.archive) callSeam(seams.fileAttributes, panel);
      return true;
    case Key::ctrl('c'):
      if (!panel.archive) callSeam(seams.fileCase, panel);
      return true;
    case MenuCode::FileDateTime:
      if (!panel.archive) callSeam(seams.fileDateTime, panel);
      return true;
    case Key::ctrl('k'):
      callSeam(seams.compareDirectories);
      return true;
    case Key::ctrl('q'):
      if (listsFiles() && panel.count() > 0) callSeam(seams.countDirectorySizes, panel);
      return true;
    default:
      return false;
  }
}

// ---- where the panels are and how they look

void sortSide(int side, int code) {
  setSort(panelPair().side[side], code);
}

void reverseSort(int side) {
  sortSide(side, reversedSort(panelPair().side[side].sort));
}

// With Shift held the keys are unassigned; a menu letter typed with Shift still counts.
bool takeSortKey(const MainLoop& loop, int key) {
  int side = panelPair().activeSide;
  if (key >= Key::CtrlF3 && key <= Key::CtrlF8) {
    if (shiftHeld(loop)) return true;
    key == Key::CtrlF8 ? reverseSort(side) : sortSide(side, key - Key::CtrlF3);
  } else if (key >= MenuCode::LeftName && key <= MenuCode::LeftUnsorted) {
    sortSide(0, key - MenuCode::LeftName);
  } else if (key >= MenuCode::RightName && key <= MenuCode::RightUnsorted) {
    sortSide(1, key - MenuCode::RightName);
  } else if (key == MenuCode::LeftReverse || key == MenuCode::RightReverse) {
    reverseSort(key == MenuCode::RightReverse);
  } else {
    return false;
  }
  return true;
}

bool takeStyleKey(int key) {
  if (key >= Key::ShiftAltF1 && key <= Key::ShiftAltF5) {
    setStyle(panelPair().activeSide, static_cast<PanelStyle>(key - Key::ShiftAltF1));
    return true;
  }
  switch (key) {
    case MenuCode::LeftBrief:
      setStyle(0, PanelStyle::Brief);
      return true;
    case MenuCode::RightBrief:
      setStyle(1, PanelStyle::Brief);
      return true;
    case MenuCode::LeftFull:
      setStyle(0, PanelStyle::Full);
      return true;
    case MenuCode::RightFull:
      setStyle(1, PanelStyle::Full);
      return true;
    case MenuCode::LeftWide:
      setStyle(0, PanelStyle::Wide);
      return true;
    case MenuCode::RightWide:
      setStyle(1, PanelStyle::Wide);
      return true;
    case MenuCode::LeftBriefWide:
      setStyle(0, PanelStyle::BriefWide);
      return true;
    case MenuCode::RightBriefWide:
      setStyle(1, PanelStyle::BriefWide);
      return true;
    case MenuCode::LeftUnix:
      setStyle(0, PanelStyle::Unix);
      return true;
    case MenuCode::RightUnix:
      setStyle(1, PanelStyle::Unix);
      return true;
    case MenuCode::LeftTree:
      setStyle(0, PanelStyle::Tree);
      return true;
    case MenuCode::RightTree:
      setStyle(1, PanelStyle::Tree);
      return true;
    case MenuCode::LeftInfo:
      toggleInfo(0);
      return true;
    case MenuCode::RightInfo:
      toggleInfo(1);
      return true;
    default:
      return false;
  }
}

void otherPanelActive() {
  PanelPair& pair = panelPair();
  if (!pair.inactive().showing) return;
  drawCursor(pair.activeSide, CursorBar::Off);
  setActiveSide(1 - pair.activeSide);
  markActivePanel();
}

bool takePanelKey(MainLoop& loop, int key) {
  int side = panelPair().activeSide;
  switch (key) {
    case Key::CtrlF1:
      toggleOnePanel(0);
      return true;
    case Key::CtrlF2:
      toggleOnePanel(1);
      return true;
    case Key::ctrl('p'):
      toggleOnePanel(1 - side);
      return true;
    case Key::ctrl('o'):
      panelsOnOff();
      return true;
    case Key::ctrl('u'):
      swapPanels();
      return true;
    case Key::ctrl('l'):
      toggleInfo(active().isFiles() ? 1 - side : side);
      return true;
    case Key::Tab:
    case Key::ShiftTab:
      otherPanelActive();
      return true;
    case Key::ctrl('r'):
      if (!bothPanelsOff()) reRead(active(), DriveChange::Allowed);
      return true;
    case MenuCode::LeftReRead:
      reRead(panelPair().side[0], DriveChange::Never);
      return true;
    case MenuCode::RightReRead:
      reRead(panelPair().side[1], DriveChange::Never);
      return true;
    case MenuCode::LeftFilter:
      setFilterDialog(0);
      return true;
    case MenuCode::RightFilter:
      setFilterDialog(1);
      return true;
    case Key::AltF1:
    case Key::AltF2:
    case Key::ctrl('w'):
      return true;
    case Key::AltF9:
      changeLines();
      return true;
    case Key::ShiftAltF9:
      changeColumns();
      return true;
    default:
      return takeSortKey(loop, key) || takeStyleKey(key);
  }
}

// The digit of a Ctrl+digit code, which holds its value or its character; -1 for other codes.
int ctrlDigit(int key) {
  int value = (key & ~Key::ShiftedKey) - Key::CtrlDigit;
  if (value >= '0' && value <= '9') value -= '0';
  return value >= 0 && value < GlobalOptions::ShortcutCount ? value : -1;
}

bool isDirectoryHistoryKey(const MainLoop& loop, int key) {
  if (key == Key::ShiftAltF8) return true;
  return key == Key::AltBackslash && loop.shiftState & ShiftState::Alt;
}

bool takeGoKey(MainLoop& loop, int key) {
  if (int digit = ctrlDigit(key); digit >= 0) {
    key& Key::ShiftedKey ? storeShortcut(digit) : goToShortcut(digit);
    return true;
  }
  if (isDirectoryHistoryKey(loop, key)) {
    goToChoice(commandSeams().directoryHistoryWindow);
    return true;
  }
  constexpr int shiftedBackslash = 0x2001C;
  switch (key) {
    case 28:
      shiftHeld(loop) ? goToOtherDirectory() : goToRoot();
      return true;
    case shiftedBackslash:
      goToOtherDirectory();
      return true;
    case 31:
      goToPreviousPath();
      return true;
    case Key::AltHome:
      goHome();
      return true;
    case Key::CtrlPageUp:
      goUp(active());
      return true;
    case Key::CtrlPageDown:
      if (!bothPanelsOff()) enterAsDirectory(active());
      return true;
    case Key::AltF10:
      goToChoice(commandSeams().treeWindow);
      return true;
    case Key::AltF5:
      if (commandSeams().storedPaths) commandSeams().storedPaths(active());
      return true;
    default:
      return false;
  }
}

// ---- menus, options, the program itself

bool takeOptionKey(MainLoop& loop, int key) {
  switch (key) {
    case Key::ctrl('h'):
    case MenuCode::Hidden:
      toggleHidden();
      return true;
    case MenuCode::PathPrompt:
      togglePathPrompt();
      loop.raise(Redraw::CommandRow);
      return true;
    case MenuCode::FullScreen:
      toggleFullScreen();
      return true;
    case MenuCode::Clock:
      toggleClock();
      return true;
    case MenuCode::TagDirectories:
      toggleTagDirectories();
      return true;
    case MenuCode::ThousandSeparator:
      toggleThousandSeparator();
      return true;
    case MenuCode::RetainCount:
      toggleRetainCount();
      return true;
    case MenuCode::Configuration:
      callSeam(commandSeams().configurationDialog);
      return true;
    case MenuCode::Colours:
      callSeam(commandSeams().coloursDialog);
      return true;
    case MenuCode::Confirmations:
      callSeam(commandSeams().confirmationsDialog);
      return true;
    case MenuCode::SaveSetup:
    case Key::ShiftF9:
      callSeam(commandSeams().saveConfiguration);
      return true;
    default:
      return false;
  }
}

void takeMenu(MainLoop& loop, MenuStart start) {
  int code = pullDownMenu(panelPair().activeSide, start);
  // Its item has the code of a key that counts only while Alt is held.
  loop.pendingKey = code == Key::AltBackslash ? Key::ShiftAltF8 : code;
}

void takeHistoryWindow(MainLoop& loop) {
  if (!commandSeams().commandHistoryWindow) return;
  HistoryChoice choice = commandSeams().commandHistoryWindow();
  if (choice.action == HistoryChoice::Action::Nothing) return;
  loop.line.setText(choice.command);
  if (choice.action == HistoryChoice::Action::Run) executeLine(loop, Separate::No);
  if (choice.action == HistoryChoice::Action::RunSeparately) executeLine(loop, Separate::Yes);
}

bool takeProgramKey(MainLoop& loop, int key) {
  constexpr int firstHelpTopic = 1;
  switch (key) {
    case Key::F1:
      callSeam(commandSeams().help, firstHelpTopic);
      return true;
    case Key::ShiftF1:
      return true;
    case Key::F2:
      callSeam(commandSeams().userMenu, panelPair().activeSide, false);
      return true;
    case Key::ShiftF2:
      callSeam(commandSeams().userMenu, panelPair().activeSide, true);
      return true;
    case MenuCode::EditUserMenu:
      callSeam(commandSeams().editUserMenu);
      return true;
    case MenuCode::EditAssociations:
      callSeam(commandSeams().editAssociations);
      return true;
    case Key::AltF8:
      takeHistoryWindow(loop);
      return true;
    case Key::F9:
    case Key::ctrl('n'):
      takeMenu(loop, MenuStart::Fresh);
      return true;
    case Key::ShiftF10:
      takeMenu(loop, MenuStart::Reopen);
      return true;
    case Key::F10:
      loop.leaving = confirmExit();
      return true;
    case Key::Enter:
      executeLine(loop, Separate::No);
      return true;
    case Key::AltEnter:
      executeLine(loop, Separate::Yes);
      return true;
    default:
      return false;
  }
}

// A code that no command claims: an Alt character starts the quick search.
void takeUnclaimed(MainLoop& loop, int key) {
  constexpr int largestCharacter = 65534;
  int character = hotKeyChar(key);
  if (character == key || character < Key::Space || character > largestCharacter) return;
  if (character == '\\') return goToOtherDirectory();
  if (!active().isFiles()) return;
  searchStep(loop, character, 1);
}

bool keepsCursorBar(int key) {
  return key == Key::Tab || key == Key::ShiftTab || key == Key::AltUp || key == Key::AltDown ||
         key == Key::AltLeft || key == Key::AltRight;
}

}  // namespace

void dispatchKey(MainLoop& loop, int key) {
  Panel* before = &active();
  if (takeLineKey(loop, key)) {
    loop.raise(Redraw::CommandRow);
    return;
  }
  if (!keepsCursorBar(key)) drawCursor(panelPair().activeSide, CursorBar::Off);
  loop.repaintCursor = true;
  if (takeListKey(loop, key)) return;
  if (takeSelectionKey(loop, key)) {
    if (before->quickSearch.empty()) drawStatusLine(*before);
    return;
  }
  if (takeFileKey(loop, key) || takePanelKey(loop, key) || takeGoKey(loop, key) ||
      takeOptionKey(loop, key) || takeProgramKey(loop, key)) {
    loop.raise(Redraw::All);
    return;
  }
  takeUnclaimed(loop, key);
}
