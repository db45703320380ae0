#include "ui/alert.h"

#include "options/colours.h"
#include "support/end_request.h"
#include "ui/alert_dialog.h"
#include "ui/ui_test.h"

namespace {

class AlertTest : public UiTest {
 protected:
  int answerTo(std::initializer_list<Key::Code> keys, AlertButtons buttons) {
    queueKeys(keys);
    return alert(L"Question", L"/some/path", buttons);
  }
};

constexpr Key::Code AltO{0x10018}, AltS{0x1001F}, AltA{0x1001E}, AltE{0x10012}, AltR{0x10013};

}  // namespace

TEST_F(AlertTest, EscIsAlwaysCancel) {
  for (int set = 0; set <= 4; ++set) {
    EXPECT_EQ(answerTo({Key::Esc}, static_cast<AlertButtons>(set)), Answer::Cancel) << set;
  }
}

TEST_F(AlertTest, TheEndOfTheProgramIsNoAnswer) {
  const EndRequest end;
  EXPECT_EQ(alert("Save?", L"", AlertButtons::OkCancel), Answer::ProgramEnds);
}

TEST_F(AlertTest, TabAndEnterMeanTheSecondButton) {
  queueKeys({Key::Tab, Key::Enter});
  EXPECT_EQ(alert("Sure?", L"", AlertButtons::OkCancel), Answer::Cancel);
}

TEST_F(AlertTest, EnterIsTheFirstButton) {
  EXPECT_EQ(answerTo({Key::Enter}, AlertButtons::Ok), Answer::Yes);
  EXPECT_EQ(answerTo({Key::Enter}, AlertButtons::OkCancel), Answer::Yes);
  EXPECT_EQ(answerTo({Key::Enter}, AlertButtons::OverwriteOne), Answer::Yes);
  EXPECT_EQ(answerTo({Key::Enter}, AlertButtons::RetrySkip), Answer::Retry);
  EXPECT_EQ(answerTo({Key::Enter}, AlertButtons::OverwriteMany), Answer::Yes);
}

TEST_F(AlertTest, EachButtonAnswersWithItsCharacter) {
  const struct {
    AlertButtons buttons;
    std::vector<int> answers;
  } sets[] = {
      {AlertButtons::Ok, {'y'}},
      {AlertButtons::OkCancel, {'y', 27}},
      {AlertButtons::OverwriteOne, {'y', 27, 's', 'a', 'e'}},
      {AlertButtons::RetrySkip, {'r', 's', 27}},
      {AlertButtons::OverwriteMany, {'y', 27, 's', 'a', 'e', 'd'}},
  };
  for (const auto& set : sets) {
    for (size_t i = 0; i < set.answers.size(); ++i) {
      for (size_t step = 0; step < i; ++step) queueKey(Key::Right);
      EXPECT_EQ(answerTo({Key::Space}, set.buttons), set.answers[i])
          << static_cast<int>(set.buttons) << " button " << i;
    }
  }
}

TEST_F(AlertTest, PlainLettersOfTheAnswersPressTheButtons) {
  for (char letter : {'y', 's', 'a', 'e', 'd'}) {
    EXPECT_EQ(answerTo({letter}, AlertButtons::OverwriteMany), letter);
  }
  EXPECT_EQ(answerTo({'S'}, AlertButtons::OverwriteMany), Answer::Skip);
  EXPECT_EQ(answerTo({'r'}, AlertButtons::RetrySkip), Answer::Retry);
}

// Skip and None must never turn into Cancel and All: the list counts by position.
TEST_F(AlertTest, HotLettersBelongToTheButtonAtTheirPosition) {
  EXPECT_EQ(answerTo({AltO}, AlertButtons::OverwriteOne), Answer::Yes);
  EXPECT_EQ(answerTo({AltS}, AlertButtons::OverwriteOne), Answer::Skip);
  EXPECT_EQ(answerTo({AltA}, AlertButtons::OverwriteOne), Answer::All);
  EXPECT_EQ(answerTo({AltE}, AlertButtons::OverwriteOne), Answer::None);
  EXPECT_EQ(answerTo({Key::AltD}, AlertButtons::OverwriteMany), Answer::AllOlder);
  EXPECT_EQ(answerTo({AltR}, AlertButtons::RetrySkip), Answer::Retry);
  EXPECT_EQ(answerTo({AltS}, AlertButtons::RetrySkip), Answer::Skip);
}

TEST_F(AlertTest, ALetterWithoutAButtonDoesNothing) {
  EXPECT_EQ(answerTo({Key::AltD, 'd', 'q', Key::Esc}, AlertButtons::OverwriteOne), Answer::Cancel);
}

TEST_F(AlertTest, ARightClickIsTheFirstButton) {
  queueClick(5, 5, 2);
  EXPECT_EQ(alert(L"Question", L"", AlertButtons::RetrySkip), Answer::Retry);
}

TEST_F(AlertTest, AClickOutsideCancels) {
  queueClick(0, 0);
  EXPECT_EQ(alert(L"Question", L"", AlertButtons::RetrySkip), Answer::Cancel);
}

TEST_F(AlertTest, TheScreenComesBack) {
  const std::vector<Cell> before = screen();
  answerTo({Key::Enter}, AlertButtons::Ok);
  EXPECT_EQ(screen(), before);
}

TEST_F(AlertTest, TheBoxIsAsWideAsItsRowOfButtonsAtLeast) {
  const struct {
    AlertButtons buttons;
    int outerWidth;
  } sets[] = {{AlertButtons::Ok, 12},
              {AlertButtons::OkCancel, 24},
              {AlertButtons::OverwriteOne, 54},
              {AlertButtons::RetrySkip, 38},
              {AlertButtons::OverwriteMany, 66}};
  for (const auto& set : sets) {
    AlertDialog box(AlertLayout(L"Hi", L"", set.buttons, 80), set.buttons, AlertColour::Message);
    EXPECT_EQ(box.right() - box.left() + 1, set.outerWidth);
    EXPECT_EQ(box.bottom() - box.top() + 1, 5);
    EXPECT_EQ(box.top(), (25 - 5) / 3);
  }
}

TEST_F(AlertTest, LinesThenThePathThenTheButtons) {
  AlertDialog box(AlertLayout(L"File already exists", L"/home/x", AlertButtons::OkCancel, 80),
                  AlertButtons::OkCancel, AlertColour::Message);
  EXPECT_EQ(inside(box, 0, 0, 22), L" File already exists  ");
  EXPECT_EQ(inside(box, 0, 1, 22), L"       /home/x        ");
  EXPECT_EQ(inside(box, 0, 2, 22), L"  [ OK ]  [ Cancel ]  ");
}

TEST_F(AlertTest, TheSixButtonsKeepTheirGapsOfTwo) {
  AlertDialog box(AlertLayout(L"Overwrite?", L"", AlertButtons::OverwriteMany, 80),
                  AlertButtons::OverwriteMany, AlertColour::Message);
  EXPECT_EQ(inside(box, 0, 2, 64),
            L" [ OK ]  [ Cancel ]  [ Skip ]  [ All ]  [ None ]  [ All Older ] ");
}

TEST_F(AlertTest, TheColourTellsErrorsFromQuestions) {
  AlertDialog message(AlertLayout(L"Hi", L"", AlertButtons::Ok, 80), AlertButtons::Ok,
                      AlertColour::Message);
  EXPECT_EQ(attrInside(message, 0, 0), colourOf(Colour::Messages));
  AlertDialog error(AlertLayout(L"Hi", L"", AlertButtons::Ok, 80), AlertButtons::Ok,
                    AlertColour::Error);
  EXPECT_EQ(attrInside(error, 0, 0), colourOf(Colour::Errors));
}

TEST_F(AlertTest, ATextOf200CharactersWrapsAtSpacesWithinTheScreen) {
  Westring text;
  for (int i = 0; i < 20; ++i) text += L"wordsword ";
  AlertDialog box(AlertLayout(text, L"", AlertButtons::Ok, 80), AlertButtons::Ok,
                  AlertColour::Message);
  EXPECT_GE(box.left(), 0);
  EXPECT_LE(box.right(), 79);
  EXPECT_EQ(box.bottom() - box.top() + 1, 3 + 4);
  for (int row = 0; row < 3; ++row) {
    std::wstring line = inside(box, 0, row, box.innerWidth());
    line.erase(0, line.find_first_not_of(L' '));
    EXPECT_EQ(line.substr(0, 10), L"wordsword ") << row;
  }
}

TEST_F(AlertTest, APathStaysWholeUpToEightColumnsLessThanTheScreen) {
  const Westring start = L"/start/";
  const Westring whole = start + Westring(L'x', 72 - start.length());
  EXPECT_STREQ(AlertLayout(L"Hi", whole, AlertButtons::Ok, 80).caption.data(), whole.data());
  const AlertLayout longer(L"Hi", whole + L"x", AlertButtons::Ok, 80);
  EXPECT_EQ(longer.caption.length(), 72);
  EXPECT_EQ(longer.width, 72);
}

TEST_F(AlertTest, ALongPathIsShortened) {
  Westring path = L"/start";
  for (int i = 0; i < 30; ++i) path += L"/component";
  AlertDialog box(AlertLayout(L"Hi", path, AlertButtons::Ok, 80), AlertButtons::Ok,
                  AlertColour::Message);
  EXPECT_LE(box.right(), 79);
  const std::wstring shown = inside(box, 0, 1, box.innerWidth());
  EXPECT_NE(shown.find(L"/start/..."), std::wstring::npos);
  EXPECT_NE(shown.find(L"component "), std::wstring::npos);
}

TEST_F(AlertTest, OneLineOnScreenForEveryBoxEvenWithoutText) {
  AlertDialog box(AlertLayout(L"", L"", AlertButtons::Ok, 80), AlertButtons::Ok,
                  AlertColour::Message);
  EXPECT_EQ(inside(box, 2, 2, 6), L"[ OK ]");
}
