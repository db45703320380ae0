#include "ui/string_field.h"

#include "console/clipboard.h"
#include "history/history_store.h"
#include "ui/ui_test.h"

namespace {

constexpr int FieldX = 2, FieldY = 1, FieldWidth = 20;
constexpr int Field = 0x30;     // the default colour of input fields
constexpr int Selected = 0x03;  // its nibbles swapped

class StringFieldTest : public UiTest {
 protected:
  void SetUp() override {
    UiTest::SetUp();
    for (int i = 0; i < FieldHistoryCount; ++i) fieldHistory(static_cast<FieldHistory>(i))->clear();
  }

  // What keys make of a text in a field of its own.
  static std::wstring edited(const wchar_t* start, std::initializer_list<Key::Code> keys,
                             int maxLength = -1) {
    Westring text = start;
    TestDialog dialog;
    dialog.addString(FieldX, FieldY, Group::New, &text, FieldWidth, maxLength);
    dialog.runKeys(keys);
    return text.data();
  }
};

// A dialog with one field whose screen is looked at.
class FieldDialog : public TestDialog {
 public:
  explicit FieldDialog(const wchar_t* start, int maxLength = -1, int width = FieldWidth,
                       FieldHistory history = FieldHistory::None)
      : text(start), width_(width) {
    addString(FieldX, FieldY, Group::New, &text, width, maxLength, history);
  }
  const StringField& field() const { return static_cast<const StringField&>(*element(0)); }
  std::wstring shown() const {
    std::wstring result;
    for (const Cell& cell : cells()) result += cell.ch;
    return result;
  }
  // The selected columns as "first-last", empty for none.
  std::string selection() const {
    int first = -1, last = -1, at = 0;
    for (const Cell& cell : cells()) {
      if (cell.attr == Selected && first < 0) first = at;
      if (cell.attr == Selected) last = at;
      ++at;
    }
    return first < 0 ? "" : std::to_string(first) + "-" + std::to_string(last);
  }
  int caret() const { return console->getCursorPos().x - originX() - FieldX; }

 protected:
  // A key would end a selection.
  void queueStop() override {
    queueMouse(EventKind::Press, RightButton);
    queueMouse(EventKind::Release, RightButton);
  }

 private:
  static constexpr int RightButton = 2;

  std::vector<Cell> cells() const {
    return console->getCells(originX() + FieldX, originY() + FieldY, width_, 1);
  }

 public:
  Westring text;

 private:
  int width_;
};

}  // namespace

TEST_F(StringFieldTest, ShowsItsTextPaddedInTheFieldColour) {
  FieldDialog dialog(L"some text");
  EXPECT_EQ(dialog.shown(), L"some text           ");
  EXPECT_EQ(attrInside(dialog, FieldX, FieldY), Field);
  EXPECT_EQ(attrInside(dialog, FieldX + FieldWidth - 1, FieldY), Field);
  EXPECT_EQ(attrInside(dialog, FieldX + FieldWidth, FieldY), Grey);
  EXPECT_EQ(attrInside(dialog, FieldX - 1, FieldY), Grey);
}

TEST_F(StringFieldTest, TheFirstPrintableKeyReplacesTheText) {
  EXPECT_EQ(edited(L"default", {'n', 'e', 'w'}), L"new");
}

TEST_F(StringFieldTest, ARefusedTextIsReplacedByTheNextPrintableKey) {
  FieldDialog dialog(L"");
  bool value = false;
  dialog.addCheck(1, 5, Group::New, &value, "Other");
  dialog.runKeys({'b', 'a', 'd', Key::Tab});
  dialog.askAgain(0);
  EXPECT_EQ(dialog.focus(), 0);
  EXPECT_STREQ(dialog.text.data(), L"bad");
  dialog.runKeys({'o', 'k'});
  EXPECT_STREQ(dialog.text.data(), L"ok");
}

TEST_F(StringFieldTest, LeftFirstAndThenAKeyInserts) {
  EXPECT_EQ(edited(L"abc", {Key::Left, 'x'}), L"abxc");
}

TEST_F(StringFieldTest, AnyKeyOfTheFieldEndsTheReplacing) {
  for (Key::Code key :
       {Key::Home, Key::End, Key::Right, Key::CtrlInsert, Key::ctrl('q'), Key::ShiftEnd}) {
    EXPECT_EQ(edited(L"abc", {key, Key::End, 'x'}), L"abcx") << key;
  }
}

TEST_F(StringFieldTest, AKeyThatOnlyPassesByLeavesTheReplacingOn) {
  FieldDialog dialog(L"abc");
  bool value = false;
  dialog.addCheck(1, 5, Group::New, &value, "Other");
  dialog.runKeys({Key::F9, Key::Tab, Key::Tab, Key::Up, 'x'});
  EXPECT_STREQ(dialog.text.data(), L"x");
}

TEST_F(StringFieldTest, DeletingKeys) {
  EXPECT_EQ(edited(L"abc", {Key::Backspace}), L"ab");
  EXPECT_EQ(edited(L"abc", {Key::Home, Key::Backspace}), L"abc");
  EXPECT_EQ(edited(L"abc", {Key::Home, Key::Delete}), L"bc");
  EXPECT_EQ(edited(L"abc", {Key::End, Key::Delete}), L"abc");
  EXPECT_EQ(edited(L"abc", {Key::Home, Key::ShiftRight, Key::ShiftRight, Key::Delete}), L"c");
  EXPECT_EQ(edited(L"abc", {Key::Home, Key::ShiftRight, Key::ShiftRight, Key::Backspace}), L"ac");
}

TEST_F(StringFieldTest, MovingKeysStayInTheText) {
  FieldDialog dialog(L"abc");
  const struct {
    std::initializer_list<Key::Code> keys;
    int cursor;
  } rows[] = {{{Key::Home}, 0},      {{Key::Left}, 0},    {{Key::Right}, 1},
              {{Key::End}, 3},       {{Key::Right}, 3},   {{Key::ShiftLeft}, 2},
              {{Key::ShiftHome}, 0}, {{Key::ShiftEnd}, 3}};
  for (const auto& row : rows) {
    dialog.runKeys(row.keys);
    EXPECT_EQ(dialog.field().cursor(), row.cursor);
    EXPECT_EQ(dialog.caret(), row.cursor);
  }
}

TEST_F(StringFieldTest, WordsByCtrlArrows) {
  FieldDialog dialog(L"one two_2, four");
  const auto cursorAfter = [&dialog](std::initializer_list<Key::Code> keys) {
    dialog.runKeys(keys);
    return dialog.field().cursor();
  };
  EXPECT_EQ(cursorAfter({Key::End, Key::CtrlLeft}), 11);
  EXPECT_EQ(cursorAfter({Key::CtrlLeft}), 4);
  GlobalOptions::BriefWordRight = false;
  EXPECT_EQ(cursorAfter({Key::CtrlRight}), 11);
  EXPECT_EQ(cursorAfter({Key::Home, Key::CtrlRight}), 4);
  GlobalOptions::BriefWordRight = true;
  EXPECT_EQ(cursorAfter({Key::CtrlRight}), 9);
  EXPECT_EQ(cursorAfter({Key::Home, Key::CtrlRight}), 3);
  EXPECT_EQ(cursorAfter({Key::CtrlRight, Key::CtrlRight, Key::CtrlRight}), 15);
}

TEST_F(StringFieldTest, WordsAreDeletedByCtrlBackspaceAndCtrlDelete) {
  EXPECT_EQ(edited(L"one two", {Key::CtrlBackspace}), L"one ");
  EXPECT_EQ(edited(L"one two", {Key::CtrlBackspace, Key::CtrlBackspace}), L"");
  EXPECT_EQ(edited(L"one two", {Key::Home, Key::CtrlDelete}), L" two");
  GlobalOptions::BriefWordRight = false;
  EXPECT_EQ(edited(L"one two", {Key::Home, Key::CtrlDelete}), L"two");
}

TEST_F(StringFieldTest, NothingIsAcceptedBeyondTheMaximum) {
  EXPECT_EQ(edited(L"", {'1', '2', '3', '4', '5', '6', '7'}, 5), L"12345");
}

TEST_F(StringFieldTest, AFreshFieldAtItsMaximumIsReplaced) {
  EXPECT_EQ(edited(L"12345", {'x'}, 5), L"x");
}

TEST_F(StringFieldTest, AFullFieldWithASelectionLosesItAndGainsNothing) {
  EXPECT_EQ(edited(L"12345", {Key::Home, Key::ShiftRight, Key::ShiftRight, 'x'}, 5), L"345");
  EXPECT_EQ(edited(L"1234", {Key::Home, Key::ShiftRight, Key::ShiftRight, 'x'}, 5), L"x34");
}

TEST_F(StringFieldTest, ANegativeMaximumMeansTheLongestText) {
  Westring text(L'x', StringField::LongestText - 1);
  TestDialog dialog;
  dialog.addString(FieldX, FieldY, Group::New, &text, FieldWidth, -1);
  dialog.runKeys({Key::End, 'a', 'b'});
  EXPECT_EQ(text.length(), StringField::LongestText);
}

TEST_F(StringFieldTest, CopyCutAndPaste) {
  EXPECT_EQ(edited(L"abcd", {Key::Home, Key::ShiftRight, Key::ShiftRight, Key::ctrl('c'), Key::End,
                             Key::ctrl('v')}),
            L"abcdab");
  EXPECT_EQ(edited(L"abcd", {Key::Home, Key::ShiftRight, Key::ShiftRight, Key::ctrl('x'), Key::End,
                             Key::ctrl('v')}),
            L"cdab");
  EXPECT_EQ(
      edited(L"abcd", {Key::Home, Key::ShiftRight, Key::CtrlInsert, Key::End, Key::ShiftInsert}),
      L"abcda");
  EXPECT_EQ(
      edited(L"abcd", {Key::End, Key::ShiftLeft, Key::ShiftDelete, Key::Home, Key::ShiftInsert}),
      L"dabc");
}

TEST_F(StringFieldTest, CopyingKeepsTheSelectionAndPastingReplacesIt) {
  FieldDialog dialog(L"abcd");
  dialog.runKeys({Key::Home, Key::ShiftRight, Key::ctrl('c')});
  EXPECT_EQ(dialog.selection(), "0-0");
  dialog.runKeys({Key::CtrlInsert});
  EXPECT_EQ(dialog.selection(), "0-0");
  clipboardSetText(L"XYZ");
  dialog.runKeys({Key::ctrl('v')});
  EXPECT_STREQ(dialog.text.data(), L"XYZbcd");
  EXPECT_EQ(dialog.selection(), "");
  EXPECT_EQ(dialog.field().cursor(), 3);
}

TEST_F(StringFieldTest, CutAndPasteWithShiftEndTheSelectionInsteadOfExtendingIt) {
  FieldDialog dialog(L"abcd");
  clipboardSetText(L"XY");
  dialog.runKeys({Key::Home, Key::ShiftInsert});
  EXPECT_STREQ(dialog.text.data(), L"XYabcd");
  EXPECT_EQ(dialog.selection(), "");
  dialog.runKeys({Key::ShiftEnd, Key::ShiftDelete});
  EXPECT_STREQ(dialog.text.data(), L"XY");
  EXPECT_EQ(dialog.selection(), "");
}

TEST_F(StringFieldTest, WithoutASelectionCopyAndCutLeaveTheClipboardAlone) {
  clipboardSetText(L"kept");
  EXPECT_EQ(edited(L"abc", {Key::Home, Key::ctrl('c'), Key::ctrl('x')}), L"abc");
  EXPECT_STREQ(clipboardGetText().data(), L"kept");
}

TEST_F(StringFieldTest, APasteThatWouldPassTheMaximumDoesNothing) {
  clipboardSetText(L"abc");
  EXPECT_EQ(edited(L"123", {Key::End, Key::ctrl('v')}, 5), L"123");
  EXPECT_EQ(edited(L"12", {Key::End, Key::ctrl('v')}, 5), L"12abc");
  // The selection counts as still there.
  EXPECT_EQ(edited(L"12345", {Key::ShiftHome, Key::ctrl('v')}, 5), L"12345");
}

TEST_F(StringFieldTest, APasteIntoAFreshFieldReplacesTheText) {
  clipboardSetText(L"abc");
  EXPECT_EQ(edited(L"12345", {Key::ctrl('v')}, 5), L"abc");
  EXPECT_EQ(edited(L"12345", {Key::ctrl('v')}, 2), L"");
}

TEST_F(StringFieldTest, AnEmptyClipboardPastesNothingAndKeepsAFreshText) {
  clipboardSetText(L"");
  EXPECT_EQ(edited(L"default", {Key::ctrl('v')}), L"default");
}

TEST_F(StringFieldTest, CtrlQTakesTheNextKeyLiterally) {
  EXPECT_EQ(edited(L"ab", {Key::End, Key::ctrl('q'), Key::Esc}), L"ab\x1B");
  EXPECT_EQ(edited(L"ab", {Key::End, Key::ctrl('q'), Key::ctrl('q')}), L"ab\x11");
  EXPECT_EQ(edited(L"ab", {Key::End, Key::ctrl('q'), Key::Enter, 'x'}), L"ab\rx");
  EXPECT_EQ(edited(L"ab", {Key::End, Key::ctrl('q'), Key::CtrlBackspace}), L"ab\x7F");
}

TEST_F(StringFieldTest, CtrlQHasNoHoldOnKeysThatAreNoCharacters) {
  EXPECT_EQ(edited(L"ab", {Key::End, Key::ctrl('q'), Key::Home, 'x'}), L"xab");
}

TEST_F(StringFieldTest, CharactersAboveTheExtendedKeysComeIn) {
  EXPECT_EQ(edited(L"a", {Key::End, L'\xFFFD', Key::Code(0x1F600) | Key::WideCharacter,
                          Key::Code(0x1003B) | Key::WideCharacter,
                          Key::Code(0x2000A) | Key::WideCharacter}),
            L"a\uFFFD\U0001F600\U0001003B\U0002000A");
  EXPECT_EQ(edited(L"a", {Key::End, Key::ctrl('q'), Key::Code(0x10053) | Key::WideCharacter}),
            L"a\U00010053");
}

TEST_F(StringFieldTest, OtherKeysGoOnToTheDialog) {
  for (Key::Code key : {Key::F5, Key::ctrl('a'), Key::GrayPlus, Key::Up, Key::CtrlHome,
                        Key::ctrlDigit(1), Key::AltDown}) {
    FieldDialog dialog(L"abc");
    dialog.addExitKey(key);
    queueKey(key);
    queueKey(Key::Esc);
    dialog.run();
    EXPECT_STREQ(dialog.text.data(), L"abc") << key;
    EXPECT_EQ(dialog.exitCode(), key == Key::Up ? Key::Esc : key) << key;
    drainEvents();
  }
}

TEST_F(StringFieldTest, TheKeypadsOperatorsAreTextUnlessTheDialogClaimsThem) {
  EXPECT_EQ(edited(L"old", {Key::GrayStar, Key::GrayPlus, Key::GrayMinus, 'c'}), L"*+-c");
}

TEST_F(StringFieldTest, ShiftedCursorKeysSelect) {
  FieldDialog dialog(L"one two");
  dialog.runKeys({Key::Home, Key::ShiftRight, Key::ShiftRight});
  EXPECT_EQ(dialog.selection(), "0-1");
  dialog.runKeys({Key::ShiftLeft});
  EXPECT_EQ(dialog.selection(), "0-0");
  dialog.runKeys({Key::CtrlShiftRight});
  EXPECT_EQ(dialog.selection(), "0-2");
  dialog.runKeys({Key::Right});
  EXPECT_EQ(dialog.selection(), "");
  dialog.runKeys({Key::End, Key::CtrlShiftLeft});
  EXPECT_EQ(dialog.selection(), "4-6");
}

TEST_F(StringFieldTest, ShiftEndThenShiftHomeTurnsRoundTheAnchor) {
  FieldDialog dialog(L"0123456789");
  dialog.runKeys({Key::Home, Key::Right, Key::Right, Key::Right, Key::ShiftEnd});
  EXPECT_EQ(dialog.selection(), "3-9");
  dialog.runKeys({Key::ShiftHome});
  EXPECT_EQ(dialog.selection(), "0-2");
  dialog.runKeys({Key::ShiftEnd});
  EXPECT_EQ(dialog.selection(), "3-9");
}

TEST_F(StringFieldTest, AKeyWithoutShiftEndsTheSelection) {
  for (Key::Code key : {Key::Left, Key::End, Key::Backspace, Key::Code('x'), Key::F9}) {
    FieldDialog dialog(L"0123456789");
    dialog.runKeys({Key::Home, Key::ShiftEnd});
    ASSERT_EQ(dialog.selection(), "0-9");
    dialog.runKeys({key});
    EXPECT_EQ(dialog.selection(), "") << key;
  }
}

TEST_F(StringFieldTest, ALongTextScrollsByWhatIsNeeded) {
  FieldDialog dialog(L"0123456789abcdef", -1, 10);
  dialog.runKeys({Key::Home});
  EXPECT_EQ(dialog.shown(), L"0123456789");
  EXPECT_EQ(dialog.caret(), 0);
  dialog.runKeys({Key::Right, Key::Right, Key::Right, Key::Right, Key::Right, Key::Right,
                  Key::Right, Key::Right, Key::Right});
  EXPECT_EQ(dialog.field().scroll(), 0);
  dialog.runKeys({Key::Right});
  EXPECT_EQ(dialog.field().scroll(), 1);
  EXPECT_EQ(dialog.shown(), L"123456789a");
  EXPECT_EQ(dialog.caret(), 9);
  dialog.runKeys({Key::End});
  EXPECT_EQ(dialog.shown(), L"789abcdef ");
  EXPECT_EQ(dialog.caret(), 9);
  dialog.runKeys({Key::Left, Key::Left, Key::Left});
  EXPECT_EQ(dialog.field().scroll(), 7);
}

TEST_F(StringFieldTest, ATextThatFitsIsShownWholeWithTheCaretBehindIt) {
  FieldDialog dialog(L"0123456789", -1, 10);
  dialog.runKeys({Key::End});
  EXPECT_EQ(dialog.shown(), L"0123456789");
  EXPECT_EQ(dialog.caret(), 10);
}

TEST_F(StringFieldTest, ATextThatTheCallerShortensIsFollowed) {
  FieldDialog dialog(L"0123456789abcdef", -1, 10);
  dialog.runKeys({Key::ShiftHome, Key::ShiftEnd});
  dialog.text = L"ab";
  dialog.redraw(0);
  EXPECT_EQ(dialog.shown(), L"ab        ");
  EXPECT_EQ(dialog.field().cursor(), 2);
  EXPECT_EQ(dialog.field().scroll(), 0);
  dialog.runKeys({'x'});
  EXPECT_STREQ(dialog.text.data(), L"abx");
}

TEST_F(StringFieldTest, APressPlacesTheCursor) {
  FieldDialog dialog(L"0123456789");
  const int x = dialog.originX() + FieldX, y = dialog.originY() + FieldY;
  queueClick(x + 4, y);
  dialog.runQueued();
  EXPECT_EQ(dialog.field().cursor(), 4);
  EXPECT_EQ(dialog.selection(), "");
  queueClick(x + 15, y);
  dialog.runQueued();
  EXPECT_EQ(dialog.field().cursor(), 10);
  queueClick(x - 1, y);
  queueClick(x + 3, y + 1);
  dialog.runQueued();
  EXPECT_EQ(dialog.field().cursor(), 10);
  dialog.runKeys({'x'});
  EXPECT_STREQ(dialog.text.data(), L"0123456789x");
}

TEST_F(StringFieldTest, ADragSelects) {
  FieldDialog dialog(L"0123456789");
  const int x = dialog.originX() + FieldX, y = dialog.originY() + FieldY;
  queueMouse(EventKind::Press, x + 2, y);
  queueMouse(EventKind::Drag, x + 4, y);
  queueMouse(EventKind::Drag, x + 6, y);
  queueMouse(EventKind::Release, x + 7, y);
  dialog.runQueued();
  EXPECT_EQ(dialog.selection(), "2-6");
  queueMouse(EventKind::Press, x + 5, y);
  dialog.runQueued();
  EXPECT_EQ(dialog.selection(), "");
}

TEST_F(StringFieldTest, APressTakesTheFocus) {
  FieldDialog dialog(L"one");
  Westring other = L"other";
  dialog.addString(FieldX, 4, Group::New, &other, FieldWidth, -1);
  queueClick(dialog.originX() + FieldX + 1, dialog.originY() + 4);
  queueKey('x');
  dialog.runQueued();
  EXPECT_EQ(dialog.focus(), 1);
  EXPECT_STREQ(other.data(), L"oxther");
}

TEST_F(StringFieldTest, TheCursorShowsInTheFocusedFieldOnly) {
  FieldDialog dialog(L"one");
  dialog.addButton(2, 5, Group::New, 'g', "Go");
  dialog.runQueued();
  EXPECT_EQ(console->cursorSize(), 15);
  EXPECT_EQ(console->getCursorPos().y, dialog.originY() + FieldY);
  dialog.runKeys({Key::Tab});
  EXPECT_EQ(console->cursorSize(), 0);
}

TEST_F(StringFieldTest, ControlCharactersShowAsTheirSigns) {
  FieldDialog dialog(L"a\x07z");
  EXPECT_EQ(dialog.shown().substr(0, 3), L"a\u2022z");
}

TEST_F(StringFieldTest, AHistoryShowsAnArrowBehindTheField) {
  FieldDialog with(L"x", -1, FieldWidth, FieldHistory::Filter);
  EXPECT_EQ(inside(with, FieldX + FieldWidth, FieldY, 1), L"\u2193");
  EXPECT_EQ(attrInside(with, FieldX + FieldWidth, FieldY), Grey);
  FieldDialog without(L"x");
  EXPECT_EQ(inside(without, FieldX + FieldWidth, FieldY, 1), L" ");
}

TEST_F(StringFieldTest, TheTextGoesToItsHistoryWhenTheDialogCloses) {
  {
    FieldDialog dialog(L"old", -1, FieldWidth, FieldHistory::Filter);
    queueKeys({'n', 'e', 'w', Key::Enter});
    dialog.run();
    EXPECT_EQ(fieldHistory(FieldHistory::Filter)->count(), 0);
  }
  ASSERT_EQ(fieldHistory(FieldHistory::Filter)->count(), 1);
  EXPECT_STREQ(fieldHistory(FieldHistory::Filter)->peek(0)->data(), L"new");
}

TEST_F(StringFieldTest, EndingByEscAddsNothingToAnyHistory) {
  {
    FieldDialog dialog(L"old", -1, FieldWidth, FieldHistory::Filter);
    queueKeys({'n', Key::Esc});
    dialog.run();
  }
  for (int i = 0; i < FieldHistoryCount; ++i) {
    EXPECT_EQ(fieldHistory(static_cast<FieldHistory>(i))->count(), 0) << i;
  }
}

TEST_F(StringFieldTest, CommitAllAddsToTheHistoryInAnyCase) {
  {
    FieldDialog dialog(L"text", -1, FieldWidth, FieldHistory::Filter);
    queueKey(Key::Esc);
    dialog.run();
    dialog.commitAll();
  }
  EXPECT_EQ(fieldHistory(FieldHistory::Filter)->count(), 1);
}

TEST_F(StringFieldTest, AnEmptyTextAddsNothing) {
  {
    FieldDialog dialog(L"", -1, FieldWidth, FieldHistory::Filter);
    queueKey(Key::Enter);
    dialog.run();
  }
  EXPECT_EQ(fieldHistory(FieldHistory::Filter)->count(), 0);
}

TEST_F(StringFieldTest, AltDownOffersTheHistoryWithTheNewestSelected) {
  for (const wchar_t* text : {L"first", L"second", L"third"}) addField(FieldHistory::Filter, text);
  FieldDialog dialog(L"x", -1, FieldWidth, FieldHistory::Filter);
  dialog.runKeys({Key::AltDown, Key::Enter});
  EXPECT_STREQ(dialog.text.data(), L"third");
  EXPECT_EQ(dialog.shown().substr(0, 6), L"third ");
  dialog.runKeys({Key::AltDown, Key::Up, Key::Up, Key::Enter});
  EXPECT_STREQ(dialog.text.data(), L"first");
  EXPECT_EQ(dialog.field().cursor(), 5);
}

TEST_F(StringFieldTest, EscInTheHistoryLeavesTheTextAloneAndTheDialogOpen) {
  addField(FieldHistory::Filter, L"first");
  FieldDialog dialog(L"x", -1, FieldWidth, FieldHistory::Filter);
  const std::vector<Cell> before = screen();
  EXPECT_EQ(dialog.runKeys({Key::AltDown, Key::Esc}), Key::Enter);
  EXPECT_STREQ(dialog.text.data(), L"x");
  EXPECT_EQ(screen(), before);
}

TEST_F(StringFieldTest, AnEmptyHistoryOffersNothingToTake) {
  FieldDialog dialog(L"x", -1, FieldWidth, FieldHistory::Filter);
  dialog.runKeys({Key::AltDown, Key::Enter});
  EXPECT_EQ(console->eventCount(), 0);
  EXPECT_STREQ(dialog.text.data(), L"x");
}

TEST_F(StringFieldTest, AClickOnTheArrowOpensTheHistory) {
  addField(FieldHistory::Filter, L"first");
  FieldDialog dialog(L"x", -1, FieldWidth, FieldHistory::Filter);
  queueClick(dialog.originX() + FieldX + FieldWidth, dialog.originY() + FieldY);
  dialog.runKeys({Key::Enter});
  EXPECT_STREQ(dialog.text.data(), L"first");
}

TEST_F(StringFieldTest, ADoubleClickInTheHistoryTakesTheEntry) {
  addField(FieldHistory::Filter, L"first");
  addField(FieldHistory::Filter, L"second");
  FieldDialog dialog(L"x", -1, FieldWidth, FieldHistory::Filter);
  queueKey(Key::AltDown);
  const int x = dialog.originX() + FieldX, y = dialog.originY() + FieldY + 2;
  queueClick(x, y);
  queueMouse(EventKind::DoubleClick, x, y);
  dialog.runQueued();
  EXPECT_STREQ(dialog.text.data(), L"first");
}

TEST_F(StringFieldTest, TheReleaseOfADoubleClickInTheHistoryPressesNothingBehindIt) {
  addField(FieldHistory::Filter, L"first");
  addField(FieldHistory::Filter, L"second");
  FieldDialog dialog(L"x", -1, FieldWidth, FieldHistory::Filter);
  dialog.addButton(FieldX, FieldY + 10, Group::New, Key::Enter, "OK");
  dialog.addButton(FieldX, FieldY + 2, Group::Same, 'g', "Behind the list");
  const int fieldX = dialog.originX() + FieldX, fieldY = dialog.originY() + FieldY;
  queueClick(fieldX + FieldWidth, fieldY);
  queueClick(fieldX + 4, fieldY + 2);
  queueMouse(EventKind::Press, fieldX + 4, fieldY + 2);
  queueMouse(EventKind::DoubleClick, fieldX + 4, fieldY + 2);
  queueMouse(EventKind::Release, fieldX + 4, fieldY + 2);
  EXPECT_EQ(dialog.runQueued(), Key::Enter);  // by the right click that ends it
  EXPECT_STREQ(dialog.text.data(), L"first");
}

TEST_F(StringFieldTest, AnEntryLongerThanTheFieldMayHoldIsCut) {
  addField(FieldHistory::Filter, L"0123456789");
  FieldDialog dialog(L"x", 5, FieldWidth, FieldHistory::Filter);
  dialog.runKeys({Key::AltDown, Key::Enter});
  EXPECT_STREQ(dialog.text.data(), L"01234");
}

TEST_F(StringFieldTest, AHistoryAtTheScreensEdgeMovesIntoIt) {
  addField(FieldHistory::Filter, L"first");
  const std::vector<Cell> before = screen();
  Westring text = L"x";
  {
    Dialog dialog(0, 20, 79, 24, Grey);
    dialog.addString(-1, 1, Group::New, &text, 79, -1, FieldHistory::Filter);
    queueKeys({Key::AltDown, Key::Enter, Key::Esc});
    dialog.run();
  }
  EXPECT_STREQ(text.data(), L"first");
  EXPECT_EQ(screen(), before);
}
