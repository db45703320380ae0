#include "commander/menu_bar.h"

#include "commander/command.h"
#include "commander/help_probe.h"
#include "commander/menu_items.h"
#include "console/key_codes.h"
#include "options/colours.h"
#include "support/console_test.h"
#include "support/turkish_locale.h"

namespace {

class MenuBarTest : public ConsoleTest {
 protected:
  Key::Code runKeys(std::initializer_list<Key::Code> codes, int side = 0,
                    MenuStart start = MenuStart::Fresh) {
    for (Key::Code code : codes) queueKey(code);
    return pullDownMenu(side, start);
  }

  // What the screen shows when the bar waits for its next key: the bar is left by a timer of
  // events, so the picture is taken by the help, which F1 calls.
  std::string screenAfter(std::initializer_list<Key::Code> codes, int side = 0) {
    std::string picture;
    const HelpProbe help([&](HelpTopic) { picture = screenText(); });
    for (Key::Code code : codes) queueKey(code);
    queueKey(Key::F1);
    queueKey(Key::F10);
    pullDownMenu(side, MenuStart::Fresh);
    return picture;
  }
};

TEST_F(MenuBarTest, TheClosedBarLooksAsDrawn) {
  expectGoldenText("menu_closed", screenAfter({}));
}

TEST_F(MenuBarTest, TheLeftMenuLooksAsDrawn) {
  expectGoldenText("menu_left", screenAfter({Key::Enter}));
}

TEST_F(MenuBarTest, TheFilesMenuLooksAsDrawn) {
  expectGoldenText("menu_files", screenAfter({'f'}));
}

TEST_F(MenuBarTest, TheCommandsMenuLooksAsDrawn) {
  expectGoldenText("menu_commands", screenAfter({'c'}));
}

TEST_F(MenuBarTest, TheOptionsMenuLooksAsDrawn) {
  expectGoldenText("menu_options", screenAfter({'o'}));
}

TEST_F(MenuBarTest, TheRightMenuLooksAsDrawn) {
  expectGoldenText("menu_right", screenAfter({Key::Enter}, 1));
}

TEST_F(MenuBarTest, EscapeLeavesAClosedBarAndClosesAnOpenOne) {
  EXPECT_EQ(runKeys({Key::Esc}), Key::NoKey);
  EXPECT_EQ(runKeys({Key::Enter, Key::Esc, Key::Esc}), Key::NoKey);
  EXPECT_EQ(console->eventCount(), 0);
  EXPECT_EQ(runKeys({Key::Enter, Key::Esc, Key::Enter, Key::Enter}), MenuCode::LeftBrief);
  EXPECT_EQ(screenText().find_first_not_of(" \n"), std::string::npos);
}

TEST_F(MenuBarTest, EnterOpensAndThenReturnsTheItemsCode) {
  EXPECT_EQ(runKeys({Key::Enter, Key::Enter}), MenuCode::LeftBrief);
  EXPECT_EQ(runKeys({Key::Enter, Key::Enter}, 1), MenuCode::RightBrief);
}

TEST_F(MenuBarTest, DownOpensAndStepsOverSeparators) {
  EXPECT_EQ(runKeys({Key::Down, Key::Down, Key::Enter}), MenuCode::LeftFull);
  EXPECT_EQ(runKeys({'o', Key::Down, Key::Down, Key::Down, Key::Enter}), MenuCode::Hidden);
}

TEST_F(MenuBarTest, UpWrapsToTheLastItemAndDownBack) {
  EXPECT_EQ(runKeys({Key::Down, Key::Up, Key::Enter}), Key::AltF1);
  EXPECT_EQ(runKeys({Key::Down, Key::Up, Key::Down, Key::Enter}), MenuCode::LeftBrief);
}

TEST_F(MenuBarTest, OnAClosedBarUpHomeAndEndDoNothing) {
  EXPECT_EQ(runKeys({Key::Up, Key::End, Key::Home, Key::Up, Key::Enter, Key::Enter}),
            MenuCode::LeftBrief);
  EXPECT_EQ(runKeys({Key::End, Key::Enter, Key::Enter}), MenuCode::LeftBrief);
  EXPECT_EQ(runKeys({Key::Down, Key::Enter}), MenuCode::LeftBrief);
}

TEST_F(MenuBarTest, KeysOfNoUseHereChangeNothing) {
  const std::string closed = screenAfter({}), open = screenAfter({Key::Enter});
  const std::initializer_list<Key::Code> useless = {
      Key::F5,       Key::ctrl('o'), Key::Insert,   Key::Tab,
      Key::ShiftF10, Key::Backspace, Key::GrayPlus, ' ',
      'z',           L'\xE4',        L'\x444',      Key::CtrlF1};
  EXPECT_TRUE(screenAfter(useless) == closed);
  std::vector<Key::Code> keys{Key::Enter};
  keys.insert(keys.end(), useless);
  for (Key::Code code : keys) queueKey(code);
  EXPECT_TRUE(screenAfter({}) == open);
}

TEST_F(MenuBarTest, HomeAndEndGoToTheFirstAndTheLastItem) {
  EXPECT_EQ(runKeys({'f', Key::End, Key::Enter}), Key::F10);
  EXPECT_EQ(runKeys({'f', Key::End, Key::Home, Key::Enter}), Key::ShiftF1);
}

TEST_F(MenuBarTest, LeftAndRightWrapAroundTheBarAndKeepItOpen) {
  EXPECT_EQ(runKeys({Key::Left, Key::Enter, Key::Enter}), MenuCode::RightBrief);
  EXPECT_EQ(runKeys({Key::Enter, Key::Right, Key::Enter}), Key::ShiftF1);
  EXPECT_EQ(runKeys({Key::Right, Key::Enter, Key::Enter}, 1), MenuCode::LeftBrief);
}

TEST_F(MenuBarTest, EveryQuickLetterReturnsItsItem) {
  for (int index = 0; index < MenuCount; ++index) {
    const Menu menu = menus()[index];
    for (const menuItem& item : menu.items) {
      if (item.isSeparator()) continue;
      char letter = item.text[item.quickLetter];
      // A letter that two items share chooses the first.
      const menuItem* first = nullptr;
      for (const menuItem& other : menu.items) {
        if (!first && !other.isSeparator() &&
            tolower(other.text[other.quickLetter]) == tolower(letter)) {
          first = &other;
        }
      }
      int side = index == RightMenu ? 1 : 0;
      EXPECT_EQ(runKeys({menu.hotLetter, letter}, side), first->code) << item.text;
    }
  }
}

TEST_F(MenuBarTest, AltLettersCountAsLetters) {
  EXPECT_EQ(runKeys({Key::alt('f'), 'q'}), Key::F10);
}

TEST_F(MenuBarTest, ReopeningReturnsToTheLastPlace) {
  EXPECT_EQ(runKeys({'o', 't'}), MenuCode::TagDirectories);
  EXPECT_EQ(runKeys({Key::Enter}, 0, MenuStart::Reopen), MenuCode::TagDirectories);
}

TEST_F(MenuBarTest, ADisabledItemCannotBeChosen) {
  menuItem& item = menus()[FilesMenu].items[0];
  Key::Code code = item.code;
  item.code = Key::NoKey;
  EXPECT_EQ(runKeys({'f', Key::Enter}), Key::NoKey);
  EXPECT_EQ(runKeys({'f', 'l', Key::F10}), Key::NoKey);
  item.code = code;
}

TEST_F(MenuBarTest, F10LeavesFromAnywhere) {
  EXPECT_EQ(runKeys({Key::F10}), Key::NoKey);
  EXPECT_EQ(runKeys({'c', Key::F10}), Key::NoKey);
}

TEST_F(MenuBarTest, F1AsksForHelpOnThisMenuAndTheRightOneSharesTheLeftOnesTopic) {
  std::vector<HelpTopic> topics;
  const HelpProbe help([&](HelpTopic topic) { topics.push_back(topic); });
  runKeys({Key::F1, Key::Right, Key::F1, Key::Left, Key::Left, Key::F1, Key::F10});
  EXPECT_EQ(topics, (std::vector<HelpTopic>{HelpTopic::PanelMenu, HelpTopic::FilesMenu,
                                            HelpTopic::PanelMenu}));
}

TEST_F(MenuBarTest, APressOnATitleSelectsItAndASecondOneOpensAndCloses) {
  queueMouse(EventKind::Press, 12, 0);
  queueKey(Key::Enter);
  queueKey(Key::Enter);
  EXPECT_EQ(pullDownMenu(0, MenuStart::Fresh), Key::ShiftF1);
  queueMouse(EventKind::Press, 4, 0);
  queueKey(Key::Enter);
  EXPECT_EQ(pullDownMenu(0, MenuStart::Fresh), MenuCode::LeftBrief);
  queueMouse(EventKind::Press, 4, 0);
  queueMouse(EventKind::Press, 4, 0);
  queueKey(Key::Esc);
  EXPECT_EQ(pullDownMenu(0, MenuStart::Fresh), Key::NoKey);
}

TEST_F(MenuBarTest, ADoubleClickOnATitleIsTwoPressesAndNoThird) {
  queueMouse(EventKind::Press, 12, 0);
  queueMouse(EventKind::Release, 12, 0);
  queueMouse(EventKind::Press, 12, 0);
  queueMouse(EventKind::DoubleClick, 12, 0);
  queueMouse(EventKind::Release, 12, 0);
  queueKey(Key::End);
  queueKey(Key::Enter);
  EXPECT_EQ(pullDownMenu(0, MenuStart::Fresh), Key::F10);
}

TEST_F(MenuBarTest, AnItemIsReturnedOnReleaseOverIt) {
  queueKey('f');
  queueMouse(EventKind::Press, 15, 4);
  queueMouse(EventKind::Release, 15, 4);
  EXPECT_EQ(pullDownMenu(0, MenuStart::Fresh), Key::F3);
}

TEST_F(MenuBarTest, AReleaseWithoutItsPressChoosesNothing) {
  queueKey('f');
  queueMouse(EventKind::Release, 15, 4);
  queueKey(Key::F10);
  EXPECT_EQ(pullDownMenu(0, MenuStart::Fresh), Key::NoKey);
}

TEST_F(MenuBarTest, AClickElsewhereClosesAndThenLeaves) {
  queueKey('f');
  queueMouse(EventKind::Press, 70, 20);
  queueMouse(EventKind::Press, 70, 20);
  EXPECT_EQ(pullDownMenu(0, MenuStart::Fresh), Key::NoKey);
}

TEST_F(MenuBarTest, EachPartHasItsColour) {
  const HelpProbe help([&](HelpTopic) {
    for (int x : {0, 10, 79}) EXPECT_EQ(attrAt(x, 0), colourOf(Colour::MenuBar)) << x;
    for (int x : {2, 9}) EXPECT_EQ(attrAt(x, 0), colourOf(Colour::MenuHighlight)) << x;
    // Frame, a chosen and a plain item to their last cell, and the separator with its mark.
    EXPECT_EQ(attrAt(2, 1), colourOf(Colour::Menu));
    EXPECT_EQ(attrAt(24, 21), colourOf(Colour::Menu));
    for (int x : {3, 23}) EXPECT_EQ(attrAt(x, 2), colourOf(Colour::MenuHighlight)) << x;
    for (int x : {3, 23}) EXPECT_EQ(attrAt(x, 3), colourOf(Colour::Menu)) << x;
    for (int x : {3, 4, 23}) EXPECT_EQ(attrAt(x, 10), colourOf(Colour::MenuBar)) << x;
  });
  runKeys({Key::Enter, Key::F1, Key::F10});
}

TEST_F(MenuBarTest, ADisabledItemHasItsForegroundOnTheRowsBackground) {
  menuItem& first = menus()[FilesMenu].items[0];
  menuItem& second = menus()[FilesMenu].items[1];
  const Key::Code codes[] = {first.code, second.code};
  first.code = second.code = Key::NoKey;
  const int foreground = colourOf(Colour::DisabledMenu) & 0x0F;
  const HelpProbe help([&](HelpTopic) {
    for (int x : {12, 17}) {
      EXPECT_EQ(attrAt(x, 2), (colourOf(Colour::MenuHighlight) & 0xF0) | foreground) << x;
      EXPECT_EQ(attrAt(x, 3), (colourOf(Colour::Menu) & 0xF0) | foreground) << x;
    }
  });
  runKeys({'f', Key::F1, Key::F10});
  first.code = codes[0];
  second.code = codes[1];
}

TEST_F(MenuBarTest, QuickLettersShowInTheirColourOnTheRowsBackground) {
  const HelpProbe help([&](HelpTopic) {
    // "Brief" is chosen: its row has the highlight's background.
    EXPECT_EQ(attrAt(4, 2), (0x0F & 0xF0) | 0x0E);
    EXPECT_EQ(attrAt(5, 2), 0x0F);
    EXPECT_EQ(attrAt(4, 3), (0x3F & 0xF0) | 0x0E);
    EXPECT_EQ(attrAt(5, 3), 0x3F);
    EXPECT_EQ(attrAt(5, 10), 0x30);
  });
  queueKey(Key::Enter);
  queueKey(Key::F1);
  queueKey(Key::F10);
  pullDownMenu(0, MenuStart::Fresh);
}

TEST_F(MenuBarTest, QuickLettersAreTheSameInATurkishLocale) {
  TurkishLocale turkish;
  ASSERT_TRUE(turkish.holds());
  const Key::Code info = runKeys({Key::Enter, 'i'});
  EXPECT_NE(info, Key::NoKey);
  EXPECT_EQ(runKeys({Key::Enter, 'I'}), info);
  drainEvents();
}

}  // namespace
