#include "console/key_codes.h"
#include "panel_screen.h"
#include "panels/commands/quick_search.h"

namespace {

constexpr Key::Code AltE{0x10012};

class StickySearchTest : public PanelScreenTest {
 protected:
  void SetUp() override {
    PanelScreenTest::SetUp();
    GlobalOptions::StickyAlt = true;
    fill(left(), {"..", "docs/", "alpha", "beta", "Bella", "berlin", "gamma"});
  }
  Key::Code search(Key::Code key) { return quickSearchStep(left(), key); }
};

}  // namespace

TEST_F(StickySearchTest, TheSearchHoldsTheKeyboardUntilAnotherKey) {
  queueText("er");
  queueKey(Key::F5);
  EXPECT_EQ(Key::F5, search(AltB));
  EXPECT_EQ("berlin", currentName(left()));
  EXPECT_TRUE(left().quickSearch.empty());
}

TEST_F(StickySearchTest, EscEndsTheSearchAndIsDropped) {
  queueText("e");
  queueKey(Key::Esc);
  EXPECT_EQ(Key::NoKey, search('b'));
  EXPECT_EQ("beta", currentName(left()));
  EXPECT_TRUE(left().quickSearch.empty());
  EXPECT_EQ(0, console->eventCount());
}

TEST_F(StickySearchTest, LettingGoOfAltAndHoldingItAgainGoesOn) {
  queueKey(Key::ShiftChanged, 0);
  queueKey(Key::ShiftChanged, ShiftState::Alt);
  queueKey(AltE, ShiftState::Alt);
  queueKey(Key::ShiftChanged, 0);
  queueText("l");
  queueKey(Key::Enter);
  EXPECT_EQ(Key::Enter, search(AltB));
  EXPECT_EQ("Bella", currentName(left()));
}

TEST_F(StickySearchTest, ReleasesAndEventsWithoutMeaningAreSkipped) {
  queueMouse(EventKind::Release, 5, 5);
  queueMouse(EventKind::Press, 5, 5, 3);
  queueMouse(EventKind::Release, 5, 5, 2);
  queueText("er");
  queueKey(Key::Tab);
  EXPECT_EQ(Key::Tab, search('b'));
  EXPECT_EQ("berlin", currentName(left()));
}

TEST_F(StickySearchTest, AMousePressEndsTheSearchAndIsHandedOn) {
  queueMouse(EventKind::Press, 7, 9);
  MouseMessage mouse;
  EXPECT_EQ(Key::MouseEvent, quickSearchStep(left(), 'b', 1, mouse));
  EXPECT_EQ(MouseKind::LeftPress, mouse.kind);
  EXPECT_EQ(7, mouse.x);
  EXPECT_EQ(9, mouse.y);
}

TEST_F(StickySearchTest, AltArrowsStepThroughTheMatches) {
  queueKey(Key::AltDown, ShiftState::Alt);
  queueKey(Key::AltDown, ShiftState::Alt);
  queueKey(Key::AltUp, ShiftState::Alt);
  queueKey(Key::F1);
  EXPECT_EQ(Key::F1, search('b'));
  EXPECT_EQ("Bella", currentName(left()));
}

TEST_F(StickySearchTest, BackspaceShortensTheTextAndTheLastOneEndsTheSearch) {
  queueText("er");
  queueKey(Key::Backspace);
  queueKey(Key::AltBackspace, ShiftState::Alt);
  queueText("el");
  queueKey(Key::F1);
  EXPECT_EQ(Key::F1, search('b'));
  EXPECT_EQ("Bella", currentName(left()));

  queueKey(Key::Backspace);
  EXPECT_EQ(Key::NoKey, search('g'));
  EXPECT_EQ("gamma", currentName(left()));
}

TEST_F(StickySearchTest, ShiftTabCompletesAndTheSearchGoesOn) {
  fill(left(), {"readme.txt", "readme.md", "other"});
  queueKey(Key::ShiftTab, ShiftState::Shift);
  queueText("m");
  queueKey(Key::F1);
  EXPECT_EQ(Key::F1, search('r'));
  EXPECT_EQ("readme.md", currentName(left()));
}

TEST_F(StickySearchTest, WhatNobodyBeginsWithEndsAtOnce) {
  EXPECT_EQ(Key::NoKey, search('z'));
  EXPECT_TRUE(left().quickSearch.empty());
}

TEST_F(StickySearchTest, ControlCharactersEndTheSearch) {
  queueKey(Key::ctrl('g'));
  EXPECT_EQ(Key::ctrl('g'), search('b'));
}

TEST_F(StickySearchTest, TheStatusLineShowsTheTextAndTheCursorBehindIt) {
  openWindows();
  int row = -1;
  CursorPos cursor;
  Beside user([&] {
    waitToShow("Search: be");
    waitUntil([] { return console->cursorSize() > 0; });
    row = rowWith("Search: be");
    cursor = console->getCursorPos();
    queueKey(Key::Esc);
  });
  queueText("e");
  search('b');
  EXPECT_EQ(panelPair().panelRows + 2, row);
  EXPECT_EQ(row, cursor.y);
  EXPECT_EQ(1 + 8 + 2, cursor.x);
  EXPECT_FALSE(shows("Search:"));
  EXPECT_EQ(0, console->cursorSize());
}

TEST_F(StickySearchTest, TheCursorStaysInThePanelBehindALongText) {
  fill(left(), {std::string(60, 'n')});
  openWindows();
  CursorPos cursor;
  Beside user([&] {
    waitUntil([] { return console->eventCount() == 0 && console->cursorSize() > 0; });
    cursor = console->getCursorPos();
    queueKey(Key::Esc);
  });
  queueText(std::string(50, 'n'));
  search('n');
  EXPECT_EQ(panelPair().panelWidth() - 2, cursor.x);
}
