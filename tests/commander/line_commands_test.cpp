// The line under the panels as the keys edit it.

#include "commander/command.h"
#include "commander/main_loop_test.h"
#include "console/clipboard.h"

namespace {

class LineKeys : public MainLoopTest {
 protected:
  void SetUp() override {
    MainLoopTest::SetUp();
    leftDir.write("plain", "");
    leftDir.write("two words", "");
    leftDir.write("-dash", "");
    leftDir.makeDir("dir");
    rightDir.write("other", "");
    openPanels();
    cursorTo("plain");
  }

  // The text with the cursor as '|'.
  std::string shown() const {
    const Westring& text = loop.line.text();
    const int cursor = loop.line.cursor();
    return bytes(::left(text, cursor)) + "|" + bytes(::right(text, text.length() - cursor));
  }
};

// ---- editing

TEST_F(LineKeys, TypedCharactersGoInAtTheCursor) {
  type("ac");
  press(Key::AltLeft, Alt);
  type("b");
  EXPECT_EQ(shown(), "ab|c");
  press(Key::ctrl('s'));
  EXPECT_EQ(shown(), "a|bc");
  press(Key::AltRight, Alt);
  press(Key::ctrl('d'));
  press(Key::ctrl('d'));
  EXPECT_EQ(shown(), "abc|");
}

TEST_F(LineKeys, AnyCharacterOfUnicodeCanBeTyped) {
  type("aŁ世😀");
  EXPECT_EQ(line(), "aŁ世😀");
  // These have the numbers of function keys.
  press(Key::Code(0x1003B) | Key::WideCharacter);
  press(Key::Code(0x2000A) | Key::WideCharacter);
  EXPECT_EQ(loop.line.text().length(), 6);
}

TEST_F(LineKeys, CharactersWithTheNumbersOfOldCodesAreText) {
  for (wchar_t character : {L'\x12D', L'\x130', L'\x132', L'\x133'}) press(character);
  EXPECT_EQ(line(), "ĭİĲĳ");
}

TEST_F(LineKeys, TheLineHolds511Characters) {
  for (int i = 0; i < 600; ++i) press('x');
  EXPECT_EQ(loop.line.text().length(), 511);
}

TEST_F(LineKeys, EveryEditingKeyDoesItsWork) {
  const struct {
    const char* what;
    Key::Code key;
    const char* result;
  } rows[] = {
      {"left", Key::Left, "one two.thre|e"},
      {"word left", Key::CtrlLeft, "one two.|three"},
      {"line's start", Key::CtrlHome, "|one two.three"},
      {"backspace", Key::Backspace, "one two.thre|"},
      {"word left deleted", Key::CtrlBackspace, "one two.|"},
      {"delete behind the end", Key::Delete, "one two.three|"},
  };
  for (const auto& row : rows) {
    loop.line.setText(L"one two.three");
    press(row.key);
    EXPECT_EQ(shown(), row.result) << row.what;
  }
  const struct {
    const char* what;
    Key::Code key;
    const char* result;
  } fromStart[] = {
      {"right", Key::Right, "o|ne two.three"},
      {"word right", Key::CtrlRight, "one| two.three"},
      {"line's end", Key::CtrlEnd, "one two.three|"},
      {"delete", Key::Delete, "|ne two.three"},
      {"word right deleted", Key::CtrlDelete, "| two.three"},
      {"backspace at the start", Key::Backspace, "|one two.three"},
  };
  for (const auto& row : fromStart) {
    loop.line.setText(L"one two.three");
    loop.line.moveHome();
    press(row.key);
    EXPECT_EQ(shown(), row.result) << row.what;
  }
}

TEST_F(LineKeys, WordRightFollowsBriefWordRight) {
  GlobalOptions::BriefWordRight = false;
  loop.line.setText(L"one two");
  loop.line.moveHome();
  press(Key::CtrlRight);
  EXPECT_EQ(shown(), "one |two");
}

TEST_F(LineKeys, EditingLeavesTheCursorBarAlone) {
  screenAfter({});
  const std::string before = screenText();
  press(Key::CtrlLeft);
  press(Key::Backspace);
  EXPECT_TRUE(screenText() == before);
}

TEST_F(LineKeys, EscClearsTheLineAndTheSearch) {
  type("text");
  left().quickSearch = L"p";
  press(Key::Esc);
  EXPECT_EQ(shown(), "|");
  EXPECT_TRUE(left().quickSearch.empty());
}

// ---- on an empty line

TEST_F(LineKeys, OnAnEmptyLineTheKeysScrollTheLongName) {
  const std::string longName = "a name that is much too long for its column";
  leftDir.write(longName, "");
  press(Key::ctrl('r'));
  cursorTo(longName);
  press(Key::Right);
  press(Key::ctrl('d'));
  EXPECT_EQ(left().nameOffset, 2);
  press(Key::AltLeft);
  EXPECT_EQ(left().nameOffset, 1);
  press(Key::Left);
  press(Key::Left);
  EXPECT_EQ(left().nameOffset, 0);
  press(Key::Right);
  screenAfter({Key::Up});
  EXPECT_EQ(left().nameOffset, 0);
}

TEST_F(LineKeys, InColumnsLeftAndRightBelongToTheList) {
  press(Key::ShiftAltF1);
  type("text");
  press(Key::Left);
  EXPECT_EQ(shown(), "text|");
  press(Key::ctrl('o'));
  press(Key::Left);
  EXPECT_EQ(shown(), "tex|t");
  press(Key::Right);
  EXPECT_EQ(shown(), "text|");
}

TEST_F(LineKeys, AnInfoPanelWithAColumnStyleLeavesTheArrowsToTheLine) {
  press(Key::ShiftAltF1);
  press(MenuCode::LeftInfo);
  type("text");
  press(Key::Left);
  EXPECT_EQ(shown(), "tex|t");
}

TEST_F(LineKeys, WithBothPanelsOffTheCursorKeysBelongToTheLine) {
  addCommand(L"older");
  addCommand(L"newer");
  press(Key::ctrl('o'));
  press(Key::Up);
  EXPECT_EQ(shown(), "newer|");
  press(Key::Up);
  EXPECT_EQ(shown(), "older|");
  press(Key::Down);
  EXPECT_EQ(shown(), "newer|");
  press(Key::Home);
  EXPECT_EQ(shown(), "|newer");
  press(Key::End);
  EXPECT_EQ(shown(), "newer|");
  press(Key::PageUp);
  press(Key::PageDown);
  press(Key::Insert);
  EXPECT_EQ(shown(), "newer|");
}

// ---- history

TEST_F(LineKeys, HistoryKeysStepAndBringBackTheUnfinishedLine) {
  addCommand(L"first");
  addCommand(L"second");
  type("unfin");
  press(Key::ctrl('e'));
  EXPECT_EQ(shown(), "second|");
  press(Key::CtrlUp);
  EXPECT_EQ(shown(), "first|");
  press(Key::ctrl('e'));
  EXPECT_EQ(shown(), "unfin|");
  press(Key::ctrl('x'));
  EXPECT_EQ(shown(), "first|");
  press(Key::CtrlDown);
  EXPECT_EQ(shown(), "second|");
  press(Key::CtrlDown);
  EXPECT_EQ(shown(), "unfin|");
}

TEST_F(LineKeys, CtrlJCompletesFromTheHistory) {
  addCommand(L"cd /one");
  addCommand(L"ls");
  addCommand(L"CD /two");
  type("cd");
  press(Key::CtrlEnter);
  EXPECT_EQ(shown(), "CD| /two");
  press(Key::CtrlEnter);
  EXPECT_EQ(shown(), "cd| /one");
  press(Key::CtrlShiftJ, Ctrl | Shift);
  EXPECT_EQ(shown(), "CD| /two");
  press(Key::CtrlEnter, Ctrl | Shift);
  EXPECT_EQ(shown(), "cd| /one");
}

TEST_F(LineKeys, CtrlJWithoutAHitLeavesTheLine) {
  addCommand(L"ls");
  type("zz");
  press(Key::CtrlEnter);
  EXPECT_EQ(shown(), "zz|");
}

// ---- names and paths on the line

TEST_F(LineKeys, CtrlJOnTheLinesStartInsertsTheNameQuoted) {
  cursorTo("two words");
  press(Key::CtrlEnter);
  EXPECT_EQ(shown(), "two\\ words|");
  loop.line.clear();
  cursorTo("-dash");
  press(Key::CtrlEnter);
  EXPECT_EQ(line(), "./-dash");
}

TEST_F(LineKeys, CtrlJWithShiftCopiesTheNameAsItIs) {
  cursorTo("two words");
  for (const auto& [key, state] :
       {std::pair{Key::CtrlShiftJ, Ctrl | Shift}, std::pair{Key::CtrlShiftEnter, Ctrl | Shift},
        std::pair{Key::CtrlEnter, Ctrl | Shift}}) {
    clipboardSetText(L"");
    press(key, state);
    EXPECT_EQ(bytes(clipboardGetText()), "two words") << key;
  }
  EXPECT_EQ(line(), "");
}

TEST_F(LineKeys, CtrlFInsertsTheFullPathAtTheCursor) {
  cursorTo("two words");
  type("x");
  press(Key::CtrlHome);
  press(Key::ctrl('f'));
  EXPECT_EQ(shown(), leftDir.path() + "/two\\ words|x");
}

TEST_F(LineKeys, CtrlFWithShiftCopiesTheFullPath) {
  cursorTo("two words");
  for (Key::Code key : {Key::CtrlShiftF, Key::ctrl('f')}) {
    clipboardSetText(L"");
    press(key, Ctrl | Shift);
    EXPECT_EQ(bytes(clipboardGetText()), leftDir.path("two words")) << key;
  }
  EXPECT_EQ(line(), "");
}

TEST_F(LineKeys, WithoutAListThereIsNoName) {
  press(MenuCode::LeftInfo);
  press(Key::ctrl('f'));
  press(Key::CtrlEnter);
  press(MenuCode::LeftInfo);
  press(Key::ctrl('o'));
  press(Key::ctrl('f'));
  press(Key::CtrlEnter);
  EXPECT_EQ(line(), "");
}

TEST_F(LineKeys, BracketKeysInsertThePanelsPathsWithASlash) {
  press(Key::Esc, Ctrl);
  EXPECT_EQ(line(), leftDir.path() + "/");
  press(Key::CtrlBracketRight, Ctrl);
  EXPECT_EQ(line(), leftDir.path() + "/" + rightDir.path() + "/");
  rightDir.makeDir("with blank");
  goToPath(right(), rightDir.wide("with blank"));
  loop.line.clear();
  press(Key::CtrlBracketRight, Ctrl);
  EXPECT_EQ(line(), rightDir.path() + "/with\\ blank/");
  goToPath(left(), L"/");
  loop.line.clear();
  press(Key::Esc, Ctrl);
  EXPECT_EQ(line(), "/");
}

// ---- clipboard

TEST_F(LineKeys, CtrlInsertCopiesTheLine) {
  type("the line");
  press(Key::CtrlInsert, Ctrl);
  EXPECT_EQ(bytes(clipboardGetText()), "the line");
  EXPECT_EQ(line(), "the line");
}

TEST_F(LineKeys, ShiftInsertPutsTheClipboardInWithoutLineBreaks) {
  clipboardSetText(L"two\r\nlines\n");
  type("ab");
  press(Key::AltLeft);
  press(Key::ShiftInsert, Shift);
  EXPECT_EQ(shown(), "atwolines|b");
}

TEST_F(LineKeys, AClipboardThatIsTooLongIsLeftOut) {
  type("ab");
  clipboardSetText(Westring(L'x', 510));
  press(Key::ShiftInsert, Shift);
  EXPECT_EQ(line(), "ab");
  clipboardSetText(Westring(L'x', 509));
  press(Key::ShiftInsert, Shift);
  EXPECT_EQ(loop.line.text().length(), 511);
}

}  // namespace
