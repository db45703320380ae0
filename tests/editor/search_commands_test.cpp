#include <thread>

#include "editor/edit_test.h"

namespace {

class SearchCommands : public EditTest {
 protected:
  // F7 with a new text, typed into the dialog.
  void searchFor(Edit& edit, const std::string& text) {
    queueText(text);
    queueKey(Key::Enter);
    edit.key(Key::F7);
  }
  void replaceWith(Edit& edit, const std::string& text, const std::string& replacement,
                   std::initializer_list<Key::Code> answers) {
    queueText(text);
    queueKey(Key::Tab);
    queueText(replacement);
    queueKey(Key::Enter);
    queueKeys(answers);
    edit.key(Key::F8);
    EXPECT_EQ(console->eventCount(), 0);
  }
};

}  // namespace

TEST_F(SearchCommands, AFirstSearchFindsAHitAtTheCursorAndARepeatedOneTheNext) {
  Edit edit("one two one two\none");
  searchFor(edit, "one");
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 0}));
  EXPECT_EQ(edit.marked(), "one");
  searchFor(edit, "one");
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 8}));
  edit.key(Key::ShiftF7);
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{1, 0}));
  EXPECT_EQ(edit.marked(), "one");
  edit.key(Key::AltF7);
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 8}));
  edit.key(Key::AltF7);
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 0}));
}

TEST_F(SearchCommands, TheHitStaysMarkedForKeysThatKeepABlock) {
  Edit edit("a word here");
  searchFor(edit, "word");
  edit.key(Key::ctrl('c'));
  EXPECT_EQ(edit.marked(), "word");
  edit.key(Key::End);
  EXPECT_EQ(edit.marked(), "-");
}

TEST_F(SearchCommands, AMissIsToldAndTheCursorStays) {
  Edit edit("one two");
  edit.editor.moveTo({0, 2});
  queueText("three");
  queueKeys({Key::Enter, Key::Enter});
  edit.key(Key::F7);
  EXPECT_EQ(console->eventCount(), 0);  // the box took the second one
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 2}));
}

TEST_F(SearchCommands, AnEmptyTextSearchesNothing) {
  Edit edit("one two");
  queueKey(Key::Enter);
  edit.key(Key::F7);
  edit.key(Key::ShiftF7);
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 0}));
}

TEST_F(SearchCommands, EscInTheDialogChangesNothing) {
  Edit edit("one two");
  queueText("two");
  queueKey(Key::Esc);
  edit.key(Key::F7);
  EXPECT_TRUE(searchValues().text.empty());
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 0}));
}

TEST_F(SearchCommands, CaseAndWholeWordsCount) {
  Edit edit("A_B a aB a");
  searchValues().text = L"a";
  searchValues().caseSensitive = true;
  edit.key(Key::ShiftF7);
  EXPECT_EQ(edit.editor.cursor().index, 4);
  edit.editor.moveTo({0, 0});
  searchValues().caseSensitive = false;
  searchValues().wholeWord = true;
  edit.key(Key::ShiftF7);
  EXPECT_EQ(edit.editor.cursor().index, 4);  // "_" belongs to a word
  edit.key(Key::ShiftF7);
  EXPECT_EQ(edit.editor.cursor().index, 9);
}

TEST_F(SearchCommands, BackwardFromTheStartOfALineGoesOnAbove) {
  Edit edit("here x\nx there\nxx");
  searchValues().text = L"x";
  searchValues().reverse = true;
  edit.editor.moveTo({1, 0});
  edit.key(Key::ShiftF7);
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 5}));
}

TEST_F(SearchCommands, ALineShorterThanTheTextIsSkipped) {
  Edit edit("ab\nabc\nabcd");
  searchFor(edit, "abcd");
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{2, 0}));
}

TEST_F(SearchCommands, WithTheStickyMarkAHitExtendsTheBlockInsteadOfBecomingIt) {
  Edit edit("one two three");
  edit.key(Key::alt('s'));
  searchFor(edit, "three");
  EXPECT_EQ(edit.marked(), "one two ");
}

TEST_F(SearchCommands, AHitFarToTheRightIsShown) {
  Edit edit(std::string(200, '.') + "needle");
  searchFor(edit, "needle");
  EXPECT_NE(rowText(1).find("needle"), std::string::npos);
}

TEST_F(SearchCommands, TheWordAtTheCursorIsSearchedWholeAndInSilence) {
  Edit edit("in inner in (in) in_ in");
  edit.editor.moveTo({0, 1});
  edit.key(Key::alt('.'));
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 9}));
  EXPECT_EQ(edit.marked(), "in");
  edit.key(Key::alt('.'));
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 13}));
  edit.key(Key::alt('.'));
  edit.key(Key::alt('.'));  // nothing more, and no box
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 21}));
  edit.key(Key::alt(','));
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 13}));
  EXPECT_FALSE(searchValues().wholeWord);
}

TEST_F(SearchCommands, WithoutAWordAtTheCursorNothingIsSearched) {
  Edit edit("   one");
  edit.key(Key::alt('.'));
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 0}));
  EXPECT_EQ(edit.marked(), "-");
  EXPECT_TRUE(searchValues().text.empty());
}

TEST_F(SearchCommands, GotoLineLeavesFiveLinesAbove) {
  std::string text;
  for (int i = 1; i <= 100; ++i) text += std::to_string(i) + "\n";
  Edit edit(text);
  queueText("50");
  queueKey(Key::Enter);
  edit.key(Key::alt('l'));
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{49, 0}));
  EXPECT_EQ(edit.editor.view.top, 44);
  queueText("3");
  queueKey(Key::Enter);
  edit.key(Key::alt('l'));
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{2, 0}));
  EXPECT_EQ(edit.editor.view.top, 0);
  queueText("101");
  queueKey(Key::Enter);
  edit.key(Key::alt('l'));
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{100, 0}));
  queueText("77");
  queueKey(Key::Esc);
  edit.key(Key::alt('l'));
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{100, 0}));
}

// ---- replacing

TEST_F(SearchCommands, EachHitIsReplacedSkippedOrTheRestLeft) {
  Edit edit("a a a a");
  replaceWith(edit, "a", "bb", {'r', 's', 'r', Key::Esc});
  EXPECT_EQ(edit.text(), "bb a bb a");
  EXPECT_TRUE(edit.editor.isModified);
  EXPECT_EQ(edit.marked(), "-");
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 0}));
  EXPECT_EQ(edit.editor.history.undo.size(), 2);
}

TEST_F(SearchCommands, CancelAtTheFirstHitSaysNothing) {
  Edit edit("a a");
  replaceWith(edit, "a", "b", {Key::Esc});
  EXPECT_EQ(edit.text(), "a a");
  EXPECT_FALSE(edit.editor.isModified);
}

TEST_F(SearchCommands, AllTellsTheCountAndEachReplacementIsAStep) {
  Edit edit("a a\na a");
  replaceWith(edit, "a", "xyz", {'r', 'a', Key::Enter});
  EXPECT_EQ(edit.text(), "xyz xyz\nxyz xyz");
  EXPECT_EQ(edit.editor.history.undo.size(), 4);
  edit.editor.moveTo(edit.editor.history.undo.top().after);
  TextPlace cursor = edit.editor.cursor();
  edit.editor.history.undoStep(edit.editor.document, cursor);
  EXPECT_EQ(edit.text(), "xyz xyz\nxyz a");
}

TEST_F(SearchCommands, AReplacementThatHoldsTheTextIsNotSearchedAgain) {
  Edit edit("ab ab");
  replaceWith(edit, "a", "aa", {'a', Key::Enter});
  EXPECT_EQ(edit.text(), "aab aab");
  searchValues().reverse = true;
  edit.editor.moveTo(edit.editor.document.end());
  replaceWith(edit, "aa", "aaa", {'a', Key::Enter});
  EXPECT_EQ(edit.text(), "aaab aaab");
}

TEST_F(SearchCommands, ReplacingBeginsAtTheCursorAndAMissIsTold) {
  Edit edit("a b");
  edit.editor.moveTo({0, 1});
  replaceWith(edit, "a", "c", {Key::Enter});
  EXPECT_EQ(edit.text(), "a b");
}

TEST_F(SearchCommands, AnEmptyReplacementDeletes) {
  Edit edit("one two");
  replaceWith(edit, "one ", "", {'a', Key::Enter});
  EXPECT_EQ(edit.text(), "two");
}

TEST_F(SearchCommands, TheQuestionStandsBelowTheHitInTheFirstTextRow) {
  std::string text;
  for (int i = 1; i <= 100; ++i) text += "line " + std::to_string(i) + "\n";
  Edit edit(text);
  std::string shown;
  std::thread observer([this, &shown] {
    waitUntil([this] { return screenText().find("String Found") != std::string::npos; });
    shown = screenText();
    queueKey(Key::Esc);
  });
  queueText("line 60");
  queueKeys({Key::Tab, 'x', Key::Enter});
  edit.key(Key::F8);
  observer.join();
  expectGoldenText("replace_question", shown);
  EXPECT_EQ(edit.editor.view.top, 0);
  EXPECT_NE(rowText(1).find("line 1"), std::string::npos);
}

TEST_F(SearchCommands, EscEndsALongSearchInSilence) {
  std::string text;
  for (int i = 0; i < 3'000'000; ++i) text += "aaaaaaaaaaaaaaaaaaab\n";
  Edit edit(text);
  searchValues().text = L"aac";
  queueKey(Key::Esc);
  edit.key(Key::ShiftF7);
  EXPECT_EQ(console->eventCount(), 0);
  EXPECT_EQ(edit.editor.cursor(), (TextPlace{0, 0}));
}
