#include "editor/document/undo.h"

#include <gtest/gtest.h>

#include "document/document_support.h"

namespace {
class Undo : public testing::Test {
 protected:
  void load(const std::string& bytes) { ASSERT_TRUE(document.load(bytes, Utf8)); }
  // Replaces as a command would, with the cursor at the start of what is replaced.
  void edit(TextPlace from, TextPlace to, std::wstring_view text, int64_t command = 0) {
    Document::Replaced replaced = document.replace(from, to, spanOf(text));
    history.push({std::move(replaced.removed), from, replaced.end, from, replaced.end, command});
    cursor = replaced.end;
  }
  std::string bytes() { return writtenBytes(document); }

  Document document;
  EditHistory history;
  TextPlace cursor;
};
}  // namespace

TEST_F(Undo, WithTheCursorElsewhereItTakesTwoPresses) {
  load("ab\ncd");
  edit({0, 1}, {0, 1}, L"x");
  cursor = {1, 1};
  EXPECT_EQ(history.undoStep(document, cursor), UndoOutcome::Moved);
  EXPECT_EQ(cursor, (TextPlace{0, 2}));
  EXPECT_EQ(bytes(), "axb\ncd");
  EXPECT_EQ(history.undoStep(document, cursor), UndoOutcome::Done);
  EXPECT_EQ(cursor, (TextPlace{0, 1}));
  EXPECT_EQ(bytes(), "ab\ncd");
  EXPECT_EQ(history.undoStep(document, cursor), UndoOutcome::Nothing);
}

TEST_F(Undo, AfterAThousandStepsTheOldestGoes) {
  load("");
  for (int i = 0; i < 1001; ++i) edit(cursor, cursor, L"x");
  EXPECT_EQ(history.undo.size(), 1000);
  while (history.undoStep(document, cursor) != UndoOutcome::Nothing) {
  }
  EXPECT_EQ(bytes(), "x");
}

TEST_F(Undo, AllHitsOfOneReplacementCountAsOneStep) {
  load("");
  const int64_t all = history.newReplaceAll();
  for (int i = 0; i < 3000; ++i) edit(cursor, cursor, L"x", all);
  for (int i = 0; i < 999; ++i) edit(cursor, cursor, L"y");
  EXPECT_EQ(history.undo.size(), 3999);
  edit(cursor, cursor, L"z");
  EXPECT_EQ(history.undo.size(), 1000);
}

TEST_F(Undo, TypingEmptiesWhatCanBeMadeAgain) {
  load("ab");
  edit({0, 0}, {0, 1}, L"");
  history.undoStep(document, cursor);
  EXPECT_EQ(history.redo.size(), 1);
  edit({0, 0}, {0, 0}, L"x");
  EXPECT_EQ(history.redo.size(), 0);
}

TEST_F(Undo, ARunOfTypedCharactersIsOneCommand) {
  load("");
  const int64_t first = history.newTypingRun();
  edit(cursor, cursor, L"a", first);
  edit(cursor, cursor, L"b", first);
  edit(cursor, cursor, L"c", history.newTypingRun());
  cursor = {};
  EXPECT_EQ(history.undoCommand(document, cursor), UndoOutcome::Done);
  EXPECT_EQ(bytes(), "ab");
  EXPECT_EQ(history.undoCommand(document, cursor), UndoOutcome::Done);
  EXPECT_EQ(bytes(), "");
  EXPECT_EQ(history.redoCommand(document, cursor), UndoOutcome::Done);
  EXPECT_EQ(bytes(), "ab");
  EXPECT_EQ(cursor, (TextPlace{0, 2}));
}

TEST_F(Undo, ALongCommandCanBeStoppedBetweenItsSteps) {
  load("");
  const int64_t all = history.newReplaceAll();
  for (int i = 0; i < 1000; ++i) edit(cursor, cursor, L"x", all);
  EXPECT_EQ(history.undoCommand(document, cursor, [] { return true; }), UndoOutcome::Done);
  EXPECT_EQ(bytes(), std::string(744, 'x'));
  EXPECT_EQ(history.undo.size(), 744);
  EXPECT_EQ(history.redo.size(), 256);
  EXPECT_EQ(history.undoCommand(document, cursor), UndoOutcome::Done);
  EXPECT_EQ(bytes(), "");
}

TEST_F(Undo, ALineEndComesBackAsItWas) {
  load("a\r\nb\rc\n");
  edit({0, 0}, {2, 1}, L"x\ny");
  history.undoStep(document, cursor);
  EXPECT_EQ(bytes(), "a\r\nb\rc\n");
}

TEST_F(Undo, StepsOfAClosedFileWorkOnTheTextThatIsThere) {
  load("one\ntwo\nthree");
  edit({2, 5}, {2, 5}, L"!");
  edit({0, 0}, {1, 1}, L"");
  EditHistory later;
  restoreSteps(storeSteps(history, Utf8, 1 << 20), later);
  history.undoStep(document, cursor);
  EXPECT_EQ(bytes(), "one\ntwo\nthree!");
  load("1");
  cursor = {0, 0};
  EXPECT_EQ(later.undoStep(document, cursor), UndoOutcome::Done);
  EXPECT_EQ(bytes(), "one\nt1");
  // What the older step put in isn't there any more.
  EXPECT_EQ(later.undoStep(document, cursor), UndoOutcome::Moved);
  EXPECT_EQ(cursor, (TextPlace{1, 2}));
  EXPECT_EQ(later.undoStep(document, cursor), UndoOutcome::Done);
  EXPECT_EQ(bytes(), "one\nt1");
}

TEST_F(Undo, StoredStepsKeepTheirRuns) {
  load("");
  const int64_t run = history.newTypingRun();
  edit(cursor, cursor, L"a", run);
  edit(cursor, cursor, L"b", run);
  EditHistory later;
  restoreSteps(storeSteps(history, Utf8, 1 << 20), later);
  EXPECT_NE(later.newTypingRun(), run);
  later.undoCommand(document, cursor);
  EXPECT_EQ(bytes(), "");
}

TEST_F(Undo, TheOldestStepsAreLeftOutWhenThereIsNoRoom) {
  load(std::string(5000, 'x'));
  edit({0, 0}, {0, 3000}, L"");
  edit({0, 0}, {0, 1000}, L"");
  const StoredUndo stored = storeSteps(history, Utf8, 2000);
  ASSERT_EQ(stored.undo.size(), 1u);
  EXPECT_EQ(TextSpan::fromStored(stored.undo[0].text).text(), std::wstring(1000, L'x'));
}

TEST_F(Undo, TheTextsOfStepsFollowACodePage) {
  ASSERT_TRUE(document.load("a\x84", {TextFormat::CodePage, 850}));  // a umlaut
  edit({0, 1}, {0, 2}, L"");
  const TextEncoding from{TextFormat::CodePage, 850};
  const TextEncoding to{TextFormat::CodePage, 1252};
  document.recode(1252);
  history.recode(from, to);
  history.undoStep(document, cursor);
  EXPECT_EQ(document.text(0), L"a\u201E");
  EXPECT_EQ(writtenBytes(document, to), "a\x84");
  history.recode(to, {TextFormat::CodePage, 932});
  EXPECT_TRUE(history.redo.empty());
}

namespace {
struct BookmarkCase {
  TextPlace mark;
  TextPlace moved;
};
}  // namespace

TEST_F(Undo, BookmarksMoveWithTheText) {
  load("0123456789\nabc\ndef\nghi\njkl");
  const BookmarkCase cases[] = {
      {{0, 2}, {0, 2}},  // before the change
      {{0, 3}, {0, 3}},  // at its start
      {{4, 1}, {3, 1}},  // behind: three lines became two
      {{3, 2}, {2, 2}},
  };
  for (const BookmarkCase& each : cases) {
    Bookmarks marks = unsetBookmarks();
    marks[3] = each.mark;
    adjustBookmarks(marks, {spanOf(L"3456789\nabc\nd"), {}, {}, {0, 3}, {1, 1}});
    EXPECT_EQ(marks[3], each.moved) << each.mark.line << "," << each.mark.index;
    EXPECT_EQ(marks[2].index, UnsetBookmark);
  }
}

TEST_F(Undo, ABookmarkBehindAChangeInItsLineMovesByTheDifference) {
  Bookmarks marks = unsetBookmarks();
  marks[0] = {1, 9};
  adjustBookmarks(marks, {spanOf(L"ab"), {}, {}, {1, 3}, {1, 8}});
  EXPECT_EQ(marks[0], (TextPlace{1, 12}));
  adjustBookmarks(marks, {{}, {}, {}, {1, 3}, {2, 1}});
  EXPECT_EQ(marks[0], (TextPlace{2, 10}));
}

TEST_F(Undo, ABookmarkNeverMovesAboveTheChange) {
  Bookmarks marks = unsetBookmarks();
  marks[0] = {2, 5};
  marks[1] = {3, 0};
  adjustBookmarks(marks, {spanOf(L"a\nb\nc\nd\ne"), {}, {}, {2, 1}, {2, 1}});
  EXPECT_EQ(marks[0], (TextPlace{2, 4}));
  EXPECT_EQ(marks[1], (TextPlace{2, 0}));
}
