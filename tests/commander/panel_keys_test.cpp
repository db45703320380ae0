// Keys that change the panels: what is tagged and found, how they look, which ones show, options.

#include "commander/command.h"
#include "commander/main_loop_test.h"
#include "panels/commands/selection.h"

namespace {

class PanelKeys : public MainLoopTest {
 protected:
  void SetUp() override {
    MainLoopTest::SetUp();
    leftDir.makeDir("dir");
    leftDir.write("file.txt", "text");
    leftDir.write("second", "22");
    rightDir.write("other", "");
    openPanels();
    cursorTo("file.txt");
  }
};

TEST_F(PanelKeys, GreyKeysWorkOnEveryFile) {
  press(Key::CtrlGrayPlus);
  EXPECT_EQ(taggedNames(left()), (std::vector<std::string>{"file.txt", "second"}));
  press(Key::GrayStar);
  EXPECT_TRUE(taggedNames(left()).empty());
  press(MenuCode::InvertSelection);
  EXPECT_EQ(left().taggedCount, 2);
  press(Key::CtrlGrayMinus);
  EXPECT_EQ(left().taggedCount, 0);
  press(Key::CtrlShiftGrayPlus, Ctrl | Shift);
  EXPECT_EQ(taggedNames(left()), (std::vector<std::string>{"dir", "file.txt", "second"}));
  press(Key::CtrlShiftGrayMinus, Ctrl | Shift);
  EXPECT_EQ(left().taggedCount, 0);
}

TEST_F(PanelKeys, RestoreTagsWhatAnOperationUsed) {
  entryNamed(left(), "second")->wasTagged = 1;
  press(Key::AltGrayPlus);
  EXPECT_EQ(taggedNames(left()), std::vector<std::string>{"second"});
  press(Key::CtrlGrayMinus);
  press(MenuCode::RestoreSelection);
  EXPECT_EQ(taggedNames(left()), std::vector<std::string>{"second"});
}

TEST_F(PanelKeys, WithDisableInvertGreyStarIsACharacter) {
  GlobalOptions::DisableInvert = true;
  press(Key::GrayStar);
  EXPECT_EQ(line(), "*");
  EXPECT_EQ(left().taggedCount, 0);
  press(MenuCode::InvertSelection);
  EXPECT_EQ(left().taggedCount, 2);
}

TEST_F(PanelKeys, InvertDoesNothingOnAnInfoPanel) {
  press(MenuCode::LeftInfo);
  press(Key::GrayStar);
  press(Key::CtrlGrayPlus);
  press(Key::AltGrayPlus);
  EXPECT_EQ(left().taggedCount, 0);
}

TEST_F(PanelKeys, AltArrowsGoToTheNextTaggedEntry) {
  press(Key::Home);
  changeTag(left(), *entryNamed(left(), "second"), TagMode::Tag);
  press(Key::AltDown);
  EXPECT_EQ(currentName(left()), "second");
  press(Key::Home);
  changeTag(left(), *entryNamed(left(), "second"), TagMode::Untag);
  changeTag(left(), *entryNamed(left(), "dir"), TagMode::Tag);
  cursorTo("second");
  press(Key::AltUp);
  EXPECT_EQ(currentName(left()), "dir");
}

TEST_F(PanelKeys, InsertTagsAndSteps) {
  press(Key::Insert);
  EXPECT_EQ(taggedNames(left()), std::vector<std::string>{"file.txt"});
  EXPECT_EQ(currentName(left()), "second");
}

TEST_F(PanelKeys, InsertOnTheParentEntryOnlySteps) {
  press(Key::Home);
  press(Key::Insert);
  EXPECT_EQ(left().taggedCount, 0);
  EXPECT_EQ(currentName(left()), "dir");
}

TEST_F(PanelKeys, ShiftWithGreyStarInvertsDirectoriesToo) {
  press(Key::GrayStar, Shift);
  EXPECT_EQ(taggedNames(left()), (std::vector<std::string>{"dir", "file.txt", "second"}));
  press(Key::GrayStar, Shift);
  EXPECT_EQ(left().taggedCount, 0);
}

TEST_F(PanelKeys, ShiftWithGreyPlusAsksForDirectoriesToo) {
  EXPECT_NE(dialogScreen("Select the files", [&] { press(Key::GrayPlus, Shift); })
                .find("Select the files/directories"),
            std::string::npos);
}

// ---- quick search

TEST_F(PanelKeys, AnAltLetterStartsTheQuickSearch) {
  GlobalOptions::StickyAlt = false;
  press(Key::Home);
  press(Key::alt('s'), Alt);
  EXPECT_EQ(currentName(left()), "second");
  EXPECT_EQ(bytes(left().quickSearch), "s");
  press(Key::alt('e'), Alt);
  EXPECT_EQ(bytes(left().quickSearch), "se");
  press(Key::AltBackspace, Alt);
  EXPECT_EQ(bytes(left().quickSearch), "s");
  press(Key::ctrl('d'));
  EXPECT_EQ(bytes(left().quickSearch), "second");
  press(Key::Esc);
  EXPECT_TRUE(left().quickSearch.empty());
}

TEST_F(PanelKeys, TheKeyThatEndsASearchIsHandledNext) {
  press(Key::Home);
  queueKey(Key::F2);
  press(Key::alt('s'), Alt);
  EXPECT_EQ(loop.pendingKey, Key::F2);
}

TEST_F(PanelKeys, AClickThatEndsASearchKeepsItsPlace) {
  press(Key::Home);
  const int row = left().count();  // the last entry: row 0 is the title
  queueKey(Key::alt('f'), Alt);
  queueMouse(EventKind::Press, 5, row);
  screenAfterQueued();
  EXPECT_EQ(currentName(left()), "second");
}

TEST_F(PanelKeys, AnInfoPanelHasNoSearch) {
  press(MenuCode::LeftInfo);
  press(Key::alt('l'), Alt);
  EXPECT_TRUE(left().quickSearch.empty());
}

// ---- sorting and styles

TEST_F(PanelKeys, SortKeysWorkOnTheActiveSide) {
  press(Key::CtrlF6);
  EXPECT_EQ(left().sort, SortCode::Size);
  EXPECT_EQ(right().sort, SortCode::Name);
  press(Key::CtrlF8);
  EXPECT_EQ(left().sort, SortCode::Size + SortCode::Reverse);
  press(Key::CtrlF8);
  EXPECT_EQ(left().sort, SortCode::Size);
  const int codes[] = {SortCode::Name, SortCode::Extension, SortCode::Time, SortCode::Size,
                       SortCode::Unsorted};
  for (int i = 0; i < 5; ++i) {
    press(functionKey(3 + i, ShiftState::Ctrl));
    EXPECT_EQ(left().sort, codes[i]);
  }
}

TEST_F(PanelKeys, SortKeysAreUnassignedWhileShiftIsHeld) {
  for (Key::Code key : {Key::CtrlF4, Key::CtrlF5, Key::CtrlF6, Key::CtrlF7, Key::CtrlF8}) {
    press(key, Ctrl | Shift);
    queueKey(Key::Esc);  // one of these codes has a dialog of its own
    press(key | Key::ShiftedKey, Ctrl | Shift);
    drainEvents();
    EXPECT_EQ(left().sort, SortCode::Name) << key;
  }
}

TEST_F(PanelKeys, SortItemsCountAlsoWhileShiftIsHeld) {
  press(MenuCode::LeftSize, Shift);
  press(MenuCode::RightTime, Shift);
  EXPECT_EQ(left().sort, SortCode::Size);
  EXPECT_EQ(right().sort, SortCode::Time);
}

TEST_F(PanelKeys, SortItemsWorkOnTheirOwnSide) {
  const Key::Code lefts[] = {MenuCode::LeftName, MenuCode::LeftExtension, MenuCode::LeftTime,
                             MenuCode::LeftSize, MenuCode::LeftUnsorted};
  const Key::Code rights[] = {MenuCode::RightName, MenuCode::RightExtension, MenuCode::RightTime,
                              MenuCode::RightSize, MenuCode::RightUnsorted};
  for (int i = 4; i >= 0; --i) {
    press(lefts[i]);
    press(rights[4 - i]);
    EXPECT_EQ(left().sort, i);
    EXPECT_EQ(right().sort, 4 - i);
    EXPECT_EQ(GlobalOptions::LeftSort, i);
    EXPECT_EQ(GlobalOptions::RightSort, 4 - i);
  }
  press(MenuCode::LeftReverse);
  EXPECT_EQ(left().sort, SortCode::Reverse);
  press(MenuCode::RightReverse);
  EXPECT_EQ(right().sort, SortCode::Unsorted + SortCode::Reverse);
}

TEST_F(PanelKeys, StyleKeysWorkOnTheActiveSide) {
  press(Key::Tab);
  for (int i = 0; i < 5; ++i) {
    press(functionKey(1 + i, ShiftState::Shift | ShiftState::Alt));
    EXPECT_EQ(static_cast<int>(right().style), i);
  }
  EXPECT_EQ(left().style, PanelStyle::Full);
}

TEST_F(PanelKeys, StyleItemsWorkOnTheirOwnSide) {
  const struct {
    Key::Code leftCode, rightCode;
    PanelStyle style;
  } rows[] = {{MenuCode::LeftBrief, MenuCode::RightBrief, PanelStyle::Brief},
              {MenuCode::LeftFull, MenuCode::RightFull, PanelStyle::Full},
              {MenuCode::LeftWide, MenuCode::RightWide, PanelStyle::Wide},
              {MenuCode::LeftBriefWide, MenuCode::RightBriefWide, PanelStyle::BriefWide},
              {MenuCode::LeftUnix, MenuCode::RightUnix, PanelStyle::Unix},
              {MenuCode::LeftTree, MenuCode::RightTree, PanelStyle::Tree}};
  for (const auto& row : rows) {
    press(row.leftCode);
    EXPECT_EQ(left().style, row.style);
    press(row.rightCode);
    EXPECT_EQ(right().style, row.style);
  }
}

// ---- panels on and off

TEST_F(PanelKeys, TabActivatesTheOtherPanelIfItIsOn) {
  press(Key::Tab);
  EXPECT_EQ(panelPair().activeSide, 1);
  press(Key::ShiftTab, Shift);
  EXPECT_EQ(panelPair().activeSide, 0);
  press(Key::CtrlF2);
  press(Key::Tab);
  EXPECT_EQ(panelPair().activeSide, 0);
}

TEST_F(PanelKeys, CtrlF1AndCtrlF2ToggleTheirPanels) {
  press(Key::CtrlF1);
  EXPECT_FALSE(left().showing);
  EXPECT_EQ(panelPair().activeSide, 1);
  press(Key::CtrlF2);
  EXPECT_FALSE(right().showing);
  press(Key::CtrlF1);
  press(Key::CtrlF2);
  EXPECT_TRUE(left().showing && right().showing);
}

TEST_F(PanelKeys, CtrlPTogglesTheInactivePanel) {
  press(Key::ctrl('p'));
  EXPECT_TRUE(left().showing);
  EXPECT_FALSE(right().showing);
  press(Key::ctrl('p'));
  EXPECT_TRUE(right().showing);
}

TEST_F(PanelKeys, CtrlOTwiceBringsBackWhatShowed) {
  press(Key::CtrlF2);
  press(Key::ctrl('o'));
  EXPECT_FALSE(left().showing || right().showing);
  press(Key::ctrl('o'));
  EXPECT_TRUE(left().showing);
  EXPECT_FALSE(right().showing);
}

TEST_F(PanelKeys, CtrlUSwapsThePanels) {
  press(Key::ctrl('u'));
  EXPECT_EQ(bytes(left().path), rightDir.path());
  EXPECT_EQ(bytes(right().path), leftDir.path());
  EXPECT_EQ(panelPair().activeSide, 1);
  EXPECT_EQ(currentName(right()), "file.txt");
}

TEST_F(PanelKeys, CtrlLShowsInfoOnTheOtherSideAndTakesItAwayOnItsOwn) {
  press(Key::ctrl('l'));
  EXPECT_FALSE(right().isFiles());
  press(Key::ctrl('l'));
  EXPECT_TRUE(right().isFiles());
  press(Key::ctrl('l'));
  press(Key::Tab);
  press(Key::ctrl('l'));
  EXPECT_TRUE(right().isFiles() && left().isFiles());
  press(MenuCode::LeftInfo);
  press(MenuCode::RightInfo);
  EXPECT_FALSE(right().isFiles() || left().isFiles());
}

TEST_F(PanelKeys, EscOnAnEmptyLineTakesThePanelsOffWhenWanted) {
  press(Key::Esc);
  EXPECT_TRUE(left().showing);
  GlobalOptions::EscPanelSwitch = true;
  type("x");
  press(Key::Esc);
  EXPECT_TRUE(left().showing);
  EXPECT_EQ(line(), "");
  press(Key::Esc);
  EXPECT_FALSE(left().showing || right().showing);
}

TEST_F(PanelKeys, CtrlRReadsAgainAndKeepsTags) {
  press(Key::Insert);
  leftDir.write("later", "");
  press(Key::ctrl('r'));
  EXPECT_NE(entryNamed(left(), "later"), nullptr);
  EXPECT_EQ(taggedNames(left()), std::vector<std::string>{"file.txt"});
}

TEST_F(PanelKeys, CtrlRDoesNothingAsADriveChangeOrWithBothPanelsOff) {
  GlobalOptions::CtrlRDriveChng = true;
  leftDir.write("later", "");
  press(Key::ctrl('r'));
  EXPECT_EQ(entryNamed(left(), "later"), nullptr);
  press(MenuCode::LeftReRead);
  EXPECT_NE(entryNamed(left(), "later"), nullptr);
  GlobalOptions::CtrlRDriveChng = false;
  press(Key::ctrl('o'));
  press(Key::ctrl('r'));
  EXPECT_FALSE(left().needsRead);
}

TEST_F(PanelKeys, ReReadItemsWorkOnTheirOwnSide) {
  leftDir.write("later", "");
  rightDir.write("later", "");
  press(MenuCode::RightReRead);
  EXPECT_EQ(entryNamed(left(), "later"), nullptr);
  EXPECT_NE(entryNamed(right(), "later"), nullptr);
}

TEST_F(PanelKeys, CtrlRInATreePanelScansAgain) {
  press(MenuCode::LeftTree);
  left().rescanTree = false;
  press(Key::ctrl('r'));
  EXPECT_TRUE(left().rescanTree);
}

TEST_F(PanelKeys, CtrlROpensTheArchiveAnew) {
  enterArchive();
  int opened = 0;
  archiveOpener() = [&, open = archiveOpener()](const Westring& file, OpenArchive* parent) {
    ++opened;
    return open(file, parent);
  };
  press(Key::ctrl('r'));
  ASSERT_NE(left().archive, nullptr);
  EXPECT_EQ(opened, 1);
  EXPECT_EQ(currentName(left()), "inner.txt");
  archiveOpener() = nullptr;
  press(Key::ctrl('r'));
  EXPECT_EQ(left().archive, nullptr);
  EXPECT_EQ(bytes(left().path), leftDir.path());
}

// ---- options

TEST_F(PanelKeys, CtrlHShowsHiddenFilesInPanelsThatAreOn) {
  leftDir.write(".hidden", "");
  rightDir.write(".hidden", "");
  press(Key::ctrl('h'));
  EXPECT_TRUE(GlobalOptions::Hidden);
  EXPECT_NE(entryNamed(left(), ".hidden"), nullptr);
  EXPECT_NE(entryNamed(right(), ".hidden"), nullptr);
  press(Key::CtrlF2);
  press(MenuCode::Hidden);
  EXPECT_EQ(entryNamed(left(), ".hidden"), nullptr);
  press(Key::CtrlF2);
  EXPECT_EQ(entryNamed(right(), ".hidden"), nullptr);
}

TEST_F(PanelKeys, CtrlHKeepsTagsAndTheWorkingDirectory) {
  press(Key::Insert);
  ASSERT_EQ(chdir("/"), 0);
  press(Key::ctrl('h'));
  EXPECT_EQ(taggedNames(left()), std::vector<std::string>{"file.txt"});
  EXPECT_EQ(std::filesystem::current_path().string(), leftDir.path());
}

TEST_F(PanelKeys, OptionItemsFlipTheirOptions) {
  using namespace GlobalOptions;
  const struct {
    Key::Code code;
    bool* option;
  } rows[] = {{MenuCode::PathPrompt, &PathPrompt},
              {MenuCode::FullScreen, &FullScreen},
              {MenuCode::Clock, &Clock},
              {MenuCode::TagDirectories, &TagDirs},
              {MenuCode::ThousandSeparator, &ThousandSep},
              {MenuCode::RetainCount, &RetainCount},
              {MenuCode::Hidden, &Hidden}};
  for (const auto& row : rows) {
    const bool before = *row.option;
    press(row.code);
    EXPECT_NE(*row.option, before) << std::hex << row.code;
    press(row.code);
    EXPECT_EQ(*row.option, before) << std::hex << row.code;
  }
}

}  // namespace
