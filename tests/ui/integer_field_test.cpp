#include "ui/integer_field.h"

#include "console/clipboard.h"
#include "ui/ui_test.h"

namespace {

class IntegerFieldTest : public UiTest {};

constexpr int NumberX = 2, NumberY = 1;

class NumberDialog : public TestDialog {
 public:
  NumberDialog(int start, int width, KeepFormat keepFormat = KeepFormat::No)
      : value(start), width_(width) {
    addInteger(NumberX, NumberY, Group::New, &value, width, keepFormat);
  }
  std::wstring shown() const {
    std::wstring result;
    for (const Cell& cell :
         console->getCells(originX() + NumberX, originY() + NumberY, width_, 1)) {
      result += cell.ch;
    }
    return result;
  }

  int value;

 private:
  int width_;
};

}  // namespace

TEST_F(IntegerFieldTest, DigitsReplaceTheNumberAndChangeTheValueLive) {
  NumberDialog dialog(100, 5);
  EXPECT_EQ(dialog.shown(), L"100  ");
  dialog.runKeys({'4', '2'});
  EXPECT_EQ(dialog.value, 42);
  EXPECT_EQ(dialog.shown(), L"42   ");
}

TEST_F(IntegerFieldTest, LettersAreIgnoredAndGoOnToTheDialog) {
  NumberDialog dialog(7, 5);
  dialog.addExitKey('q');
  dialog.runKeys({'a', '-', ' ', '+', Key::Code(0x1F600) | Key::WideCharacter});
  EXPECT_EQ(dialog.value, 7);
  queueKey('q');
  EXPECT_EQ(dialog.run(), 'q');
}

TEST_F(IntegerFieldTest, APasteOfAnythingParsesAsFarAsItGoes) {
  NumberDialog dialog(7, 8, KeepFormat::Yes);
  clipboardSetText(L"123");
  dialog.runKeys({Key::ctrl('v')});
  EXPECT_EQ(dialog.value, 123);
  clipboardSetText(L"4x5");
  dialog.runKeys({Key::End, Key::ctrl('v')});
  EXPECT_EQ(dialog.value, 1234);
  EXPECT_EQ(dialog.shown(), L"1234x5  ");
}

TEST_F(IntegerFieldTest, TheFieldHoldsNoMoreDigitsThanItIsWide) {
  NumberDialog dialog(0, 3);
  dialog.runKeys({'1', '2', '3', '4'});
  EXPECT_EQ(dialog.value, 123);
  EXPECT_EQ(dialog.shown(), L"123");
}

TEST_F(IntegerFieldTest, ANumberAsWideAsTheFieldIsShownWhole) {
  NumberDialog dialog(100, 3);
  dialog.runQueued();
  EXPECT_EQ(dialog.shown(), L"100");
}

TEST_F(IntegerFieldTest, EighteenDigitsAreTheMostAndTheValueStaysInRange) {
  NumberDialog dialog(0, 30, KeepFormat::Yes);
  for (int i = 0; i < 25; ++i) queueKey('9');
  dialog.runQueued();
  EXPECT_EQ(dialog.value, 2147483647);
  EXPECT_EQ(dialog.shown(), std::wstring(18, L'9') + std::wstring(12, L' '));
}

TEST_F(IntegerFieldTest, LeadingZerosStayOnlyWithTheFormatKept) {
  NumberDialog kept(0, 5, KeepFormat::Yes);
  kept.runKeys({'0', '0', '7'});
  EXPECT_EQ(kept.shown(), L"007  ");
  EXPECT_EQ(kept.value, 7);
  NumberDialog plain(0, 5);
  plain.runKeys({'0', '0', '7'});
  EXPECT_EQ(plain.shown(), L"7    ");
  EXPECT_EQ(plain.value, 7);
}

TEST_F(IntegerFieldTest, ARedrawShowsAValueThatTheCallerChanged) {
  for (KeepFormat keep : {KeepFormat::No, KeepFormat::Yes}) {
    NumberDialog dialog(5, 5, keep);
    dialog.value = 77;
    dialog.redraw(0);
    EXPECT_EQ(dialog.shown(), L"77   ");
  }
}

TEST_F(IntegerFieldTest, AClearedNumberIsZeroAndTypingGoesOn) {
  NumberDialog dialog(5, 4);
  dialog.runKeys({Key::Backspace});
  EXPECT_EQ(dialog.value, 0);
  EXPECT_EQ(dialog.shown(), L"0   ");
  dialog.runKeys({'8'});
  EXPECT_EQ(dialog.value, 8);
  EXPECT_EQ(dialog.shown(), L"8   ");
}

TEST_F(IntegerFieldTest, AHistoryKeepsTheDigits) {
  fieldHistory(FieldHistory::SearchText)->clear();
  {
    TestDialog dialog;
    int value = 5;
    dialog.addInteger(1, 1, Group::New, &value, 5, KeepFormat::No, FieldHistory::SearchText);
    queueKeys({'6', '7', Key::Enter});
    dialog.run();
  }
  ASSERT_EQ(fieldHistory(FieldHistory::SearchText)->count(), 1);
  EXPECT_STREQ(fieldHistory(FieldHistory::SearchText)->peek(0)->data(), L"67");
}

TEST_F(IntegerFieldTest, ANumberTakenFromTheHistoryBecomesTheValue) {
  fieldHistory(FieldHistory::SearchText)->clear();
  addField(FieldHistory::SearchText, L"123");
  TestDialog dialog;
  int value = 5;
  dialog.addInteger(1, 1, Group::New, &value, 5, KeepFormat::No, FieldHistory::SearchText);
  dialog.runKeys({Key::AltDown, Key::Enter});
  EXPECT_EQ(value, 123);
  EXPECT_EQ(inside(dialog, 1, 1, 5), L"123  ");
}
