// What each key and menu code does, and when it does nothing.

#include <filesystem>

#include "commander/command.h"
#include "commander/main_loop_test.h"
#include "commander/seam_log.h"
#include "language/association_set.h"

namespace {

enum class Situation { Lists, BothOff, Info, InArchive };

struct CommandRow {
  const char* name;
  Key::Code key;
  int state;
  bool whenOff, whenInfo, whenInArchive;  // acts also then
};

void PrintTo(const CommandRow& row, std::ostream* out) {
  *out << row.name;
}

constexpr bool Acts = true, Silent = false;

// Every command that opens a window or goes to another module, with its conditions.
const CommandRow CommandRows[] = {
    {"F1", Key::F1, 0, Acts, Acts, Acts},
    {"F2", Key::F2, 0, Acts, Acts, Acts},
    {"Shift-F2", Key::ShiftF2, Shift, Acts, Acts, Acts},
    {"F3", Key::F3, 0, Silent, Silent, Acts},
    {"Alt-F3", Key::AltF3, Alt, Silent, Silent, Acts},
    {"Shift-F3", Key::ShiftF3, Shift, Acts, Acts, Silent},
    {"F4", Key::F4, 0, Silent, Acts, Acts},
    {"Alt-F4", Key::AltF4, Alt, Silent, Acts, Acts},
    {"Shift-F4", Key::ShiftF4, Shift, Acts, Acts, Silent},
    {"F5", Key::F5, 0, Silent, Silent, Acts},
    {"F6", Key::F6, 0, Silent, Silent, Acts},
    {"Shift-F5", Key::ShiftF5, Shift, Silent, Silent, Silent},
    {"Shift-F6", Key::ShiftF6, Shift, Silent, Silent, Silent},
    {"Ctrl-Shift-F5", Key::CtrlShiftF5, Shift | Ctrl, Silent, Silent, Silent},
    {"F7", Key::F7, 0, Acts, Acts, Silent},
    {"Shift-F7", Key::ShiftF7, Shift, Acts, Acts, Acts},
    {"Alt-F7", Key::AltF7, Alt, Acts, Acts, Acts},
    {"Shift-Alt-F7", Key::ShiftAltF7, Alt | Shift, Acts, Acts, Acts},
    {"Shift-F8", Key::ShiftF8, Shift, Acts, Acts, Acts},
    {"F8", Key::F8, 0, Silent, Silent, Acts},
    {"Alt-F8", Key::AltF8, Alt, Acts, Acts, Acts},
    {"Shift-Alt-F8", Key::ShiftAltF8, Alt | Shift, Acts, Acts, Acts},
    {"Alt-Backslash", Key::AltBackslash, Alt, Acts, Acts, Acts},
    {"F9", Key::F9, 0, Acts, Acts, Acts},
    {"Ctrl-N", Key::ctrl('n'), Ctrl, Acts, Acts, Acts},
    {"Shift-F10", Key::ShiftF10, Shift, Acts, Acts, Acts},
    {"Shift-F9", Key::ShiftF9, Shift, Acts, Acts, Acts},
    {"F10", Key::F10, 0, Acts, Acts, Acts},
    {"Alt-F5", Key::AltF5, Alt, Acts, Acts, Acts},
    {"Alt-F6", Key::AltF6, Alt, Acts, Acts, Acts},
    {"Alt-F10", Key::AltF10, Alt, Acts, Acts, Acts},
    {"Ctrl-A", Key::ctrl('a'), Ctrl, Acts, Acts, Silent},
    {"Ctrl-C", Key::ctrl('c'), Ctrl, Acts, Acts, Silent},
    {"Ctrl-K", Key::ctrl('k'), Ctrl, Silent, Silent, Acts},
    {"Ctrl-T", Key::ctrl('t'), Ctrl, Silent, Silent, Acts},
    {"Ctrl-Y", Key::ctrl('y'), Ctrl, Silent, Silent, Acts},
    {"Grey plus", Key::GrayPlus, 0, Silent, Silent, Acts},
    {"Grey minus", Key::GrayMinus, 0, Silent, Silent, Acts},
    {"Select Group", MenuCode::SelectGroup, 0, Silent, Silent, Acts},
    {"Unselect Group", MenuCode::UnselectGroup, 0, Silent, Silent, Acts},
    {"File Date/Time", MenuCode::FileDateTime, 0, Acts, Acts, Silent},
    {"Edit Associations", MenuCode::EditAssociations, 0, Acts, Acts, Acts},
    {"Edit User Menu", MenuCode::EditUserMenu, 0, Acts, Acts, Acts},
    {"Configuration", MenuCode::Configuration, 0, Acts, Acts, Acts},
    {"Colours", MenuCode::Colours, 0, Acts, Acts, Acts},
    {"Confirmations", MenuCode::Confirmations, 0, Acts, Acts, Acts},
    {"Save Setup", MenuCode::SaveSetup, 0, Acts, Acts, Acts},
    {"Left Filter", MenuCode::LeftFilter, 0, Acts, Acts, Acts},
    {"Right Filter", MenuCode::RightFilter, 0, Acts, Acts, Acts},
};

class KeyCommands : public MainLoopTest {
 protected:
  void SetUp() override {
    MainLoopTest::SetUp();
    leftDir.makeDir("dir");
    leftDir.write("file.txt", "text");
    leftDir.write("second", "22");
    rightDir.write("other", "");
    homeDir.makeDir(".tdx");
    homeDir.write(".tdx/td.mnu", "a: Entry\n  command\n");
    log.extracted = L"/tmp/extracted";
    log.connect();
    openPanels();
    cursorTo("file.txt");
  }
  void TearDown() override {
    associationSets().viewers.clear();
    associationSets().editors.clear();
    MainLoopTest::TearDown();
  }

  void put(Situation situation) {
    if (situation == Situation::BothOff) press(Key::ctrl('o'));
    if (situation == Situation::Info) press(MenuCode::LeftInfo);
    if (situation == Situation::InArchive) enterArchive();
    log.take();
  }

  // True when the key called a module, saved, or opened a window, which the queued Esc then left.
  bool acts(Key::Code key, int state) {
    queueKey(Key::Esc);
    queueKey(Key::Esc);
    press(key, state);
    const bool opened = console->eventCount() < 2;
    drainEvents();
    const bool saved = homeDir.exists(".tdx/td.ini");
    return opened || saved || !log.take().empty();
  }

  SeamLog log;
};

class CommandConditions : public KeyCommands, public testing::WithParamInterface<CommandRow> {
 protected:
  void SetUp() override {
    KeyCommands::SetUp();
    addCommand(L"ls");
  }
};

TEST_P(CommandConditions, ActInAPanelOfFiles) {
  EXPECT_TRUE(acts(GetParam().key, GetParam().state));
}

TEST_P(CommandConditions, HoldWithBothPanelsOff) {
  put(Situation::BothOff);
  EXPECT_EQ(acts(GetParam().key, GetParam().state), GetParam().whenOff);
}

TEST_P(CommandConditions, HoldOnAnInfoPanel) {
  put(Situation::Info);
  EXPECT_EQ(acts(GetParam().key, GetParam().state), GetParam().whenInfo);
}

TEST_P(CommandConditions, HoldInsideAnArchive) {
  put(Situation::InArchive);
  EXPECT_EQ(acts(GetParam().key, GetParam().state), GetParam().whenInArchive);
}

INSTANTIATE_TEST_SUITE_P(Keys, CommandConditions, testing::ValuesIn(CommandRows),
                         [](const auto& row) {
                           std::string name = row.param.name;
                           std::erase_if(name, [](char c) { return !isalnum(c); });
                           return name;
                         });

// ---- keys that must do nothing at all

TEST_F(KeyCommands, KeysWithoutAFunctionHereDoNothing) {
  press(Key::F11);
  const std::string before = screenText();
  for (Key::Code key :
       {Key::ShiftF1, Key::AltF1, Key::AltF2, Key::ctrl('w'), Key::ctrl('b'), Key::ctrl('g'),
        Key::ctrl('v'), Key::ctrl('z'), Key::F11, Key::F12, Key::CtrlF9, Key::CtrlF10, Key::AltDown,
        Key::Code(0x4000A), Key::Code(0x4000F), Key::Code(0x40040)}) {
    EXPECT_FALSE(acts(key, 0)) << key;
    EXPECT_EQ(line(), "") << key;
    EXPECT_TRUE(left().quickSearch.empty()) << key;
  }
  EXPECT_TRUE(screenText() == before);
}

TEST_F(KeyCommands, UnconnectedModulesLeaveTheirKeysSilent) {
  SeamLog::disconnect();
  for (Key::Code key : {Key::F1, Key::F3, Key::AltF3, Key::F4, Key::AltF4, Key::ShiftF7,
                        Key::AltF10, Key::ctrl('q'), Key::ShiftAltF8, Key::Enter}) {
    EXPECT_FALSE(acts(key, 0)) << key;
  }
  EXPECT_EQ(currentName(left()), "file.txt");
}

// ---- what modules are told

TEST_F(KeyCommands, ModulesAreToldWhatTheKeyMeans) {
  const struct {
    Key::Code key;
    const char* call;
  } rows[] = {
      {Key::F1, "help 1"},
      {Key::ShiftF7, "compress file.txt"},
      {Key::AltF10, "tree"},
      {Key::ShiftAltF8, "directory history"},
      {Key::Enter, "run open file.txt"},
  };
  associationSets().associations.addPair(L"*.txt", L"open");
  for (const auto& row : rows) {
    press(row.key);
    EXPECT_EQ(log.take(), std::vector<std::string>{row.call}) << std::hex << row.key;
  }
}

TEST_F(KeyCommands, FindAndCompareOpenTheirDialogs) {
  dialogScreen("File(s) to find:", [&] { press(Key::AltF7); });
  dialogScreen("File(s) to find:", [&] { press(Key::ShiftAltF7); });
  dialogScreen("Directory Compare", [&] { press(Key::ctrl('k')); });
}

TEST_F(KeyCommands, SaveSetupWritesTheConfigurationFile) {
  for (Key::Code key : {Key::ShiftF9, MenuCode::SaveSetup}) {
    GlobalOptions::Hidden = true;
    press(key);
    EXPECT_TRUE(homeDir.exists(".tdx/td.ini")) << key;
    std::filesystem::remove_all(homeDir.path(".tdx"));
  }
}

TEST_F(KeyCommands, EditAssociationsEditsTheFileAndReadsItsListsAgain) {
  homeDir.makeDir(".tdx");
  homeDir.write(".tdx/td.ini", "Hidden=on\n[Colours]\n*.txt: bright red\n");
  press(MenuCode::EditAssociations);
  EXPECT_EQ(log.take(), std::vector<std::string>{"edit " + homeDir.path(".tdx/td.ini")});
  EXPECT_EQ(associationSets().fileColours.count(), 1);
  EXPECT_FALSE(GlobalOptions::Hidden);
  associationSets().fileColours.clear();
}

TEST_F(KeyCommands, EditUserMenuEditsTheMainOne) {
  press(MenuCode::EditUserMenu);
  EXPECT_EQ(log.take(), std::vector<std::string>{"edit " + homeDir.path(".tdx/td.mnu")});
}

TEST_F(KeyCommands, AllOfThemWorkForTheActiveSide) {
  press(Key::Tab);
  cursorTo("other");
  press(Key::ShiftF7);
  EXPECT_EQ(log.take(), std::vector<std::string>{"compress other"});
  dialogScreen("Copy \"other\" to", [&] { press(Key::F5); });
}

TEST_F(KeyCommands, AltBackslashWithoutAltGoesToTheOtherPanelsDirectory) {
  press(Key::AltBackslash, 0);
  EXPECT_TRUE(log.take().empty());
  EXPECT_EQ(bytes(left().path), rightDir.path());
}

TEST_F(KeyCommands, TheMenuItemDirectoryHistoryNeedsNoAlt) {
  queueKey(Key::F9);
  queueKey('c');
  queueKey('i');
  screenAfterQueued();
  EXPECT_EQ(log.take(), std::vector<std::string>{"directory history"});
}

TEST_F(KeyCommands, AChosenDirectoryBecomesThePanelsFromTheTop) {
  for (Key::Code key : {Key::AltF10, Key::ShiftAltF8}) {
    goToPath(left(), leftDir.wide());
    left().cursor = 1;
    left().depth = 3;
    log.directory = rightDir.wide();
    press(key);
    EXPECT_EQ(bytes(left().path), rightDir.path()) << key;
    EXPECT_EQ(left().top + left().cursor, 0);
    EXPECT_EQ(left().depth, -1);
  }
}

TEST_F(KeyCommands, AChosenCommandRunsOrGoesOnTheLine) {
  GlobalOptions::Background = L"bg";
  addCommand(L"make");
  type("x");
  queueKey(Key::Enter);
  press(Key::AltF8);
  EXPECT_EQ(log.take(), std::vector<std::string>{"run make"});
  EXPECT_EQ(line(), "");
  queueKey(Key::AltEnter);
  press(Key::AltF8);
  EXPECT_EQ(log.take(), std::vector<std::string>{"run bg make"});
  queueKey(Key::Up);
  queueKey(Key::CtrlEnter);
  press(Key::AltF8);
  EXPECT_EQ(line(), "make");
  type("x");
  queueKey(Key::Esc);
  press(Key::AltF8);
  EXPECT_EQ(line(), "makex");
  EXPECT_EQ(log.take(), std::vector<std::string>{});
}

TEST_F(KeyCommands, F1InTheCommandHistoryIsAboutIt) {
  addCommand(L"make");
  queueKey(Key::F1);
  queueKey(Key::Esc);
  press(Key::AltF8);
  EXPECT_EQ(log.take(), std::vector<std::string>{"help 5"});
}

TEST_F(KeyCommands, AChosenStoredPathBecomesThePanels) {
  GlobalOptions::directoryShortcuts[3] = rightDir.wide();
  queueKey('3');
  press(Key::AltF5);
  EXPECT_EQ(bytes(left().path), rightDir.path());
  EXPECT_EQ(left().currentIndex(), 0);
}

// ---- View and Edit

TEST_F(KeyCommands, ViewTakesTheAssociationThenTheOptionThenTheInternalViewer) {
  press(Key::F3);
  EXPECT_EQ(log.take(), std::vector<std::string>{"view the list at file.txt"});
  GlobalOptions::Viewer = L"less";
  press(Key::F3);
  EXPECT_EQ(log.take(), std::vector<std::string>{"run less file.txt"});
  associationSets().viewers.addPair(L"*.txt", L"special");
  press(Key::F3);
  EXPECT_EQ(log.take(), std::vector<std::string>{"run special file.txt"});
  cursorTo("second");
  press(Key::F3);
  EXPECT_EQ(log.take(), std::vector<std::string>{"run less second"});
}

TEST_F(KeyCommands, AltF3TakesTheSecondViewerAndNoAssociation) {
  associationSets().viewers.addPair(L"*.txt", L"special");
  GlobalOptions::Viewer = L"less";
  press(Key::AltF3);
  EXPECT_EQ(log.take(), std::vector<std::string>{"view the list at file.txt"});
  GlobalOptions::Viewer2 = L"hex";
  press(Key::AltF3);
  EXPECT_EQ(log.take(), std::vector<std::string>{"run hex file.txt"});
}

TEST_F(KeyCommands, ViewCountsADirectoryAndEditLeavesItAlone) {
  leftDir.write("dir/file", std::string(321, 'x'));
  for (const Key::Code key : {Key::F3, Key::ctrl('q')}) {
    cursorTo("dir");
    entry& item = *left().currentEntry();
    item.level = 0;
    item.size = 0;
    press(key);
    EXPECT_EQ(item.size, 321u);
    EXPECT_EQ(item.level, 1);
  }
  EXPECT_TRUE(log.take().empty());
  press(Key::F4);
  EXPECT_TRUE(log.take().empty());
}

TEST_F(KeyCommands, EditTakesTheAssociationThenTheOptionThenTheInternalEditor) {
  press(Key::F4);
  EXPECT_EQ(log.take(), std::vector<std::string>{"edit " + leftDir.path("file.txt")});
  GlobalOptions::Editor = L"vi";
  GlobalOptions::Editor2 = L"ed";
  press(Key::F4);
  associationSets().editors.addPair(L"*.txt", L"special");
  press(Key::F4);
  press(Key::AltF4);
  EXPECT_EQ(log.take(), (std::vector<std::string>{"run vi file.txt", "run special file.txt",
                                                  "run ed file.txt"}));
}

TEST_F(KeyCommands, AfterTheEditorThePanelsAreReadAgain) {
  const std::string under = currentName(left());
  log.editing = [this] {
    leftDir.write("new file", "");
    rightDir.write("other new file", "");
  };
  press(Key::F4);
  EXPECT_NE(entryNamed(left(), "new file"), nullptr);
  EXPECT_NE(entryNamed(right(), "other new file"), nullptr);
  EXPECT_EQ(currentName(left()), under) << "the bar stays on the file that was edited";
}

TEST_F(KeyCommands, WhatIsViewedOrEditedInAnArchiveIsTakenOutFirst) {
  put(Situation::InArchive);
  press(Key::F3);
  press(Key::F4);
  GlobalOptions::Viewer = L"less";
  press(Key::F3);
  EXPECT_EQ(log.take(), (std::vector<std::string>{"view the list at inner.txt", "extract inner.txt",
                                                  "edit /tmp/extracted", "extract inner.txt",
                                                  "run less /tmp/extracted"}));
  log.extracted = L"";
  press(Key::F3);  // less, still
  press(Key::F4);
  EXPECT_EQ(log.take(), (std::vector<std::string>{"extract inner.txt", "extract inner.txt"}));
}

TEST_F(KeyCommands, EditOnAnInfoPanelOpensTheNoteOfTheOtherDirectory) {
  put(Situation::Info);
  press(Key::F4);
  EXPECT_EQ(log.take(), std::vector<std::string>{"edit " + rightDir.path("dirinfo")});
}

TEST_F(KeyCommands, AnEmptyListHasNothingToViewEditOrCount) {
  left().filter = L"nothing.at.all";
  goToPath(left(), L"/dev/shm");
  clearListing(left());
  for (Key::Code key : {Key::F3, Key::F4, Key::AltF3, Key::AltF4, Key::ctrl('q'), Key::Enter,
                        Key::CtrlPageDown, Key::Insert, Key::CtrlEnter, Key::ctrl('f')}) {
    press(key);
    EXPECT_TRUE(log.take().empty()) << key;
  }
  EXPECT_EQ(line(), "");
}

// ---- Copy and its relatives

TEST_F(KeyCommands, CopyAndMoveOpenTheirDialogs) {
  const struct {
    Key::Code key;
    const char* text;
    const char* field;
  } rows[] = {
      {Key::F5, "Copy \"file.txt\" to", "other"},
      {Key::F6, "Move/Rename \"file.txt\" to", "other"},
      {Key::ShiftF5, "Copy \"file.txt\" to", "file.txt"},
      {Key::ShiftF6, "Move/Rename \"file.txt\" to", "file.txt"},
  };
  for (const auto& row : rows) dialogScreen(row.text, [&] { press(row.key); });
}

TEST_F(KeyCommands, AnArchiveInTheOtherPanelTakesCopyAndMove) {
  put(Situation::InArchive);
  press(Key::Tab);
  cursorTo("other");
  press(Key::F5);
  press(Key::F6);
  EXPECT_EQ(log.take(), (std::vector<std::string>{"archive copy other", "archive move other"}));
  // One that doesn't show, or shows as INFO, takes nothing.
  press(MenuCode::LeftInfo);
  dialogScreen("Copy \"other\" to", [&] { press(Key::F5); });
  press(MenuCode::LeftInfo);
  press(Key::CtrlF1);
  dialogScreen("Copy \"other\" to", [&] { press(Key::F5); });
  EXPECT_TRUE(log.take().empty());
}

// ---- leaving and menus

TEST_F(KeyCommands, ExitAsksUnlessTheQuestionIsOff) {
  dialogScreen("Are you sure you want to exit TD/X ?", [&] { press(Key::F10); });
  EXPECT_FALSE(loop.leaving);
  for (Key::Code key : {Key::Code('y'), Key::Code('Y'), Key::Enter}) {
    loop.leaving = false;
    dialogScreen(
        "Are you sure you want to exit TD/X ?", [&] { press(Key::F10); }, key);
    EXPECT_TRUE(loop.leaving);
  }
  loop.leaving = false;
  GlobalOptions::Confirmations = ConfirmationOff::Quit;
  press(Key::F10);
  EXPECT_TRUE(loop.leaving);
}

TEST_F(KeyCommands, AMenuItemRunsAsItsKey) {
  queueKey(Key::F9);
  queueKey('f');
  queueKey('v');
  screenAfterQueued();
  EXPECT_EQ(log.take(), std::vector<std::string>{"view the list at file.txt"});
}

TEST_F(KeyCommands, TheMenuOpensOnTheActiveSide) {
  press(Key::Tab);
  queueKey(Key::F9);
  queueKey(Key::Enter);
  queueKey('s');
  screenAfterQueued();
  EXPECT_EQ(left().sort, SortCode::Name);
  EXPECT_EQ(right().sort, SortCode::Size);
}

}  // namespace
