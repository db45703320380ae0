#include <functional>
#include <thread>

#include "editor/dialogs/code_page_dialog.h"
#include "editor/dialogs/format_dialog.h"
#include "editor/dialogs/goto_dialogs.h"
#include "editor/dialogs/note_window.h"
#include "editor/dialogs/questions.h"
#include "editor/dialogs/save_as_dialog.h"
#include "editor/dialogs/search_dialog.h"
#include "foundation/code_page.h"
#include "foundation/names.h"
#include "history/history_store.h"
#include "support/end_request.h"
#include "support/manual_clock.h"
#include "ui/ui_test.h"

using namespace TDEditor;

namespace {

class EditorDialogs : public UiTest {
 protected:
  // Runs `ask` in this thread until its screen shows `expected`, compares the screen with the
  // golden one and ends it with Esc.
  void expectDialog(const char* golden, const std::string& expected,
                    const std::function<void()>& ask) {
    std::string shown;
    std::thread observer([&] {
      waitUntil([&] { return screenText().find(expected) != std::string::npos; });
      // Whoever takes input has drawn everything.
      queueKey(Key::ShiftChanged);
      waitUntil([] { return console->eventCount() == 0; });
      shown = screenText();
      queueKey(Key::Esc);
    });
    ask();
    observer.join();
    expectGoldenText(golden, shown);
  }

  static TextForm formOf(TextFormat format, bool mark = false, int page = 0) {
    return {{format, page}, mark};
  }

  // What the format dialog makes of `form` with these keys and Enter.
  TextForm asked(TextForm form, std::initializer_list<Key::Code> keys) {
    CFormatSelectDlg dialog(" Select File Encoding ", form);
    queueKeys(keys);
    queueKey(Key::Enter);
    EXPECT_TRUE(dialog.ask(form));
    return form;
  }
};

}  // namespace

TEST_F(EditorDialogs, TheFormatDialogLooksAsItShould) {
  CFormatSelectDlg dialog(" Select File Encoding ", formOf(TextFormat::Utf8));
  expectGolden("format_dialog");
}

TEST_F(EditorDialogs, TheSaveAsDialogLooksAsItShould) {
  CSaveAsDlg dialog(L"/home/user/notes.txt", formOf(TextFormat::Utf16Be, true));
  EXPECT_EQ(dialog.focus(), 7);
  expectGolden("save_as_dialog");
}

TEST_F(EditorDialogs, EveryFormatComesBackAsItWent) {
  for (const TextFormat format : {TextFormat::Utf32Le, TextFormat::Utf32Be, TextFormat::Utf16Le,
                                  TextFormat::Utf16Be, TextFormat::Utf8, TextFormat::CodePage}) {
    for (const bool mark : {false, true}) {
      const TextForm form = asked(formOf(format, mark, 1252), {});
      EXPECT_EQ(form.encoding.format, format);
      EXPECT_EQ(form.hasMark, mark);
    }
  }
  EXPECT_EQ(asked(formOf(TextFormat::CodePage, false, 1252), {}).encoding.page, 1252);
}

TEST_F(EditorDialogs, TheDefaultPageIsShownByItsNumber) {
  CFormatSelectDlg dialog(" Select File Encoding ", formOf(TextFormat::CodePage));
  EXPECT_EQ(inside(dialog, 45, 1, 5), L"850  ");
}

TEST_F(EditorDialogs, AChangeToWideUnitsSetsTheMarkAndTheWayBackRestoresIt) {
  const TextForm wide = asked(formOf(TextFormat::Utf8), {Key::Down});
  EXPECT_EQ(wide.encoding.format, TextFormat::Utf16Le);
  EXPECT_TRUE(wide.hasMark);
  EXPECT_FALSE(asked(formOf(TextFormat::Utf8), {Key::Down, Key::Up}).hasMark);
  EXPECT_TRUE(asked(formOf(TextFormat::Utf16Le, true), {Key::Up}).hasMark);
  EXPECT_FALSE(asked(formOf(TextFormat::Utf16Le, false), {Key::Down, Key::Up}).hasMark);
}

TEST_F(EditorDialogs, HotLettersReachTheFormatsAndTheBoxes) {
  const TextForm form =
      asked(formOf(TextFormat::Utf8), {Key::alt('3'), Key::alt('e'), Key::alt('b')});
  EXPECT_EQ(form.encoding.format, TextFormat::Utf32Be);
  EXPECT_FALSE(form.hasMark);  // set by the change, taken off by its letter
  EXPECT_EQ(
      asked(formOf(TextFormat::Utf8), {Key::alt('c'), Key::alt('p'), '4', '3', '7'}).encoding.page,
      437);
}

TEST_F(EditorDialogs, AnUnknownCodePageKeepsTheDialogOpen) {
  const TextForm form =
      asked(formOf(TextFormat::CodePage, false, 437),
            {Key::alt('p'), '9', '9', '9', '9', '9', Key::Enter, Key::Enter, '1', '2', '5', '0'});
  EXPECT_EQ(form.encoding.page, 1250);
}

TEST_F(EditorDialogs, AnUnknownPageThatIsNotUsedDoesNotMatter) {
  const TextForm form = asked(formOf(TextFormat::Utf8), {Key::alt('p'), '9', '9', '9', '9', '9'});
  EXPECT_EQ(form.encoding.format, TextFormat::Utf8);
}

TEST_F(EditorDialogs, EscLeavesTheFormatAlone) {
  TextForm form = formOf(TextFormat::Utf8);
  Westring name = L"a.txt";
  CSaveAsDlg dialog(name, form);
  queueKeys({'b', Key::alt('6'), Key::Esc});
  EXPECT_FALSE(dialog.ask(name, form));
  EXPECT_EQ(form.encoding.format, TextFormat::Utf8);
  EXPECT_FALSE(form.hasMark);
  EXPECT_TRUE(sameName(name, L"a.txt"));
}

TEST_F(EditorDialogs, SaveAsTakesANameAndAFormat) {
  TextForm form = formOf(TextFormat::Utf8);
  Westring name = L"a.txt";
  CSaveAsDlg dialog(name, form);
  queueKeys({'b', '.', 'h', Key::alt('6'), Key::alt('n'), Key::End, 'h', Key::Enter});
  EXPECT_TRUE(dialog.ask(name, form));
  EXPECT_TRUE(sameName(name, L"b.hh"));
  EXPECT_EQ(form.encoding.format, TextFormat::Utf16Le);
  EXPECT_TRUE(form.hasMark);
}

TEST_F(EditorDialogs, SaveAsKeepsALongName) {
  TextForm form = formOf(TextFormat::Utf8);
  Westring name(L'x', 700);
  CSaveAsDlg dialog(name, form);
  queueKeys({Key::End, 'y', Key::Enter});
  EXPECT_TRUE(dialog.ask(name, form));
  EXPECT_EQ(name.length(), 700);
}

TEST_F(EditorDialogs, TheEndOfTheProgramLeavesEverythingAsItWas) {
  const EndRequest end;
  TextForm form = formOf(TextFormat::Utf8);
  EXPECT_FALSE(CFormatSelectDlg(" Select File Encoding ", form).ask(form));
  SearchValues values;
  EXPECT_FALSE(askSearch(values, SearchDialogUse::Search));
  Estring list = "437";
  EXPECT_FALSE(askCodePageList(list));
  EXPECT_FALSE(askLine(1, 10));
  EXPECT_FALSE(askOffset());
  EXPECT_FALSE(askReload());
  EXPECT_EQ(askLeave(), LeaveAnswer::ProgramEnds);
  EXPECT_EQ(askReplace(), ReplaceAnswer::ProgramEnds);
  EXPECT_EQ(askRecovery(L"/a"), RecoveryAnswer::ProgramEnds);
}

TEST_F(EditorDialogs, TheSearchDialogLooksAsItShould) {
  SearchValues values;
  values.text = L"last text";
  values.wholeWord = true;
  expectDialog("search_dialog", "last text", [&] { askSearch(values, SearchDialogUse::Search); });
  values.replacement = L"other text";
  expectDialog("replace_dialog", "other text",
               [&] { askSearch(values, SearchDialogUse::Replace); });
}

TEST_F(EditorDialogs, SearchTakesTextsAndBoxesAndKeepsHistories) {
  SearchValues values;
  values.text = L"old";
  queueKeys({'n', 'e', 'w', Key::alt('p'), 'b', 'y', Key::Tab, Key::Tab, Key::Space, Key::Down,
             Key::Space, Key::Enter});
  EXPECT_TRUE(askSearch(values, SearchDialogUse::Replace));
  EXPECT_TRUE(sameName(values.text, L"new"));
  EXPECT_TRUE(sameName(values.replacement, L"by"));
  EXPECT_TRUE(values.caseSensitive);
  EXPECT_TRUE(values.reverse);
  EXPECT_FALSE(values.wholeWord);
  EXPECT_GE(fieldHistory(FieldHistory::SearchText)->count(), 1);
  EXPECT_GE(fieldHistory(FieldHistory::Replacement)->count(), 1);
}

TEST_F(EditorDialogs, EscLeavesTheSearchAsItWas) {
  SearchValues values;
  values.text = L"old";
  queueKeys({'n', Key::Tab, Key::Tab, Key::Space, Key::Esc});
  EXPECT_FALSE(askSearch(values, SearchDialogUse::Search));
  EXPECT_TRUE(sameName(values.text, L"old"));
  EXPECT_FALSE(values.caseSensitive);
}

TEST_F(EditorDialogs, TheGotoDialogsLookAsTheyShould) {
  expectDialog("goto_line", "1-1234", [] { askLine(12, 1234); });
  expectDialog("goto_line_of_millions", "1-20000000", [] { askLine(1, 20'000'000); });
  expectDialog("goto_line_uncounted", "Goto Line", [] { askLine(); });
  expectDialog("goto_offset", "Goto Offset", [] { askOffset(); });
}

TEST_F(EditorDialogs, GotoLineAsksAgainOutsideTheRange) {
  queueKeys({'0', Key::Enter, '9', Key::Enter, '4', Key::Enter});
  EXPECT_EQ(askLine(1, 5), 4);
  queueKeys({'9', Key::Enter, Key::Esc});
  EXPECT_EQ(askLine(1, 5), std::nullopt);
}

TEST_F(EditorDialogs, GotoLineTakesSixDigitsUntilThereAreMoreLines) {
  queueText("1234567");
  queueKey(Key::Enter);
  EXPECT_EQ(askLine(1, 999'999), 123456);
  queueText("1234567");
  queueKey(Key::Enter);
  EXPECT_EQ(askLine(1, 2'000'000), 1234567);
  // More than the field's variable holds.
  queueText("9999999999");
  queueKeys({Key::Enter, Key::Esc});
  EXPECT_EQ(askLine(1, 2'000'000), std::nullopt);
}

TEST_F(EditorDialogs, AnOffsetIsHexadecimalUpToTheFirstOtherCharacter) {
  EXPECT_EQ(parseOffset(L"1fA0"), 0x1FA0);
  EXPECT_EQ(parseOffset(L"10 20"), 0x10);
  EXPECT_EQ(parseOffset(L"x1"), 0);
  EXPECT_EQ(parseOffset(L""), 0);
  EXPECT_EQ(parseOffset(L"7fffffffffffffff"), INT64_MAX);
  EXPECT_EQ(parseOffset(L"8000000000000000"), INT64_MAX);
  EXPECT_EQ(parseOffset(L"ffffffffffffffff"), INT64_MAX);
  queueText("ff");
  queueKey(Key::Enter);
  EXPECT_EQ(askOffset(), 255);
}

TEST_F(EditorDialogs, TheCodePageListIsEditedOnlyByEnter) {
  Estring list = "437,1252";
  expectDialog("code_page_list", "437,1252", [&] { askCodePageList(list); });
  queueKeys({'8', '5', '0', Key::Esc});
  EXPECT_FALSE(askCodePageList(list));
  EXPECT_STREQ(list.data(), "437,1252");
  queueKeys({'8', '5', '0', Key::Enter});
  EXPECT_TRUE(askCodePageList(list));
  EXPECT_STREQ(list.data(), "850");
}

TEST_F(EditorDialogs, TheQuestionsLookAsTheyShould) {
  expectDialog("leave_box", "unsaved changes", [] { askLeave(); });
  expectDialog("string_found_box", "String Found", [] { askReplace(); });
  expectDialog("reload_box", "discard changes?", [] { askReload(); });
  expectDialog("recovery_box", "earlier edit", [] { askRecovery(L"/home/user/notes.txt"); });
}

TEST_F(EditorDialogs, EachQuestionAnswersToItsLetters) {
  const std::pair<Key::Code, LeaveAnswer> leave[] = {{'s', LeaveAnswer::Save},
                                                     {'d', LeaveAnswer::Discard},
                                                     {'e', LeaveAnswer::Edit},
                                                     {Key::Esc, LeaveAnswer::Edit},
                                                     {Key::Enter, LeaveAnswer::Save}};
  for (const auto& [key, answer] : leave) {
    queueKey(key);
    EXPECT_EQ(askLeave(), answer) << key;
  }
  const std::pair<Key::Code, ReplaceAnswer> replace[] = {{'r', ReplaceAnswer::Replace},
                                                         {'s', ReplaceAnswer::Skip},
                                                         {'a', ReplaceAnswer::All},
                                                         {Key::Esc, ReplaceAnswer::Cancel},
                                                         {Key::Enter, ReplaceAnswer::Replace}};
  for (const auto& [key, answer] : replace) {
    queueKey(key);
    EXPECT_EQ(askReplace(), answer) << key;
  }
  const std::pair<Key::Code, RecoveryAnswer> recovery[] = {{'r', RecoveryAnswer::Restore},
                                                           {'d', RecoveryAnswer::Delete},
                                                           {Key::Esc, RecoveryAnswer::Cancel}};
  for (const auto& [key, answer] : recovery) {
    queueKey(key);
    EXPECT_EQ(askRecovery(L"/a"), answer) << key;
  }
}

TEST_F(EditorDialogs, ANoteStandsFramedInTheMiddle) {
  {
    const CNoteWindow note(NoMoreFiles);
    expectGolden("no_more_files");
  }
  const CNoteWindow note(Searching);
  expectGolden("searching");
}

TEST_F(EditorDialogs, SearchingIsSaidOnlyWhenItLasts) {
  static ManualClock clock;
  CSearchWatch watch(clock);
  EXPECT_FALSE(watch.pressed());
  clock.moveOn(99);
  EXPECT_FALSE(watch.pressed());
  EXPECT_FALSE(watch.showing());
  clock.moveOn(1);
  EXPECT_FALSE(watch.pressed());
  EXPECT_TRUE(watch.showing());
  EXPECT_NE(screenText().find("Searching..."), std::string::npos);
  watch.closeWindow();
  EXPECT_EQ(screenText().find("Searching..."), std::string::npos);
  queueKey(Key::Esc);
  clock.moveOn(50);
  EXPECT_TRUE(watch.pressed());
  EXPECT_FALSE(watch.showing());
}

TEST_F(EditorDialogs, ASearchLooksForEscAtMostTwentyTimesASecond) {
  static ManualClock clock;
  CSearchWatch watch(clock);
  queueKeys({'a', 'b', 'c'});
  for (int i = 0; i < 99; ++i) {
    clock.moveOn(1);
    watch.pressed();
  }
  EXPECT_EQ(console->events().eventCount(), 2);  // the look at 50 ms took one
  drainEvents();
}

TEST_F(EditorDialogs, BreakEndsASearchToo) {
  static ManualClock clock;
  CSearchWatch watch(clock);
  requestBreak();
  clock.moveOn(50);
  EXPECT_TRUE(watch.pressed());
}
