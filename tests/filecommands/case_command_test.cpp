#include "filecommands/case_command.h"

#include "filecommands/case_window.h"
#include "filecommands/command_test.h"
#include "support/fault_hook.h"
#include "support/manual_clock.h"

namespace {

class CaseCommandTest : public CommandTest {
 protected:
  void changeCase(const std::vector<Step>& steps) {
    play(steps, [&] { caseCommand(left()); });
  }
  static Step dialog(std::vector<Key::Code> keys, const std::string& golden = "") {
    return {"Change case of", std::move(keys), golden};
  }
};

}  // namespace

TEST_F(CaseCommandTest, TheRulesOfTheSettingAreOffered) {
  file("left/Some.File");
  show("Some.File");
  changeCase({dialog({Key::Enter}, "case_one")});
  EXPECT_EQ(listed(left()), (Texts{"..", "some.file"}));
  EXPECT_EQ(screenText(), before_);
}

TEST_F(CaseCommandTest, EachPartHasItsOwnRule) {
  file("left/two.dots.txt");
  show("two.dots.txt");
  // Upper for the name, none for the extension.
  changeCase({dialog({Key::Down, Key::Tab, Key::Up, Key::Enter})});
  EXPECT_EQ(listed(left()), (Texts{"..", "TWO.DOTS.txt"}));
  EXPECT_STREQ(GlobalOptions::CaseMod.data(), "un");
}

TEST_F(CaseCommandTest, EscChangesNeitherNamesNorSettings) {
  file("left/NAME");
  show("NAME");
  changeCase({dialog({Key::Down, Key::Tab, Key::Tab, Key::Space, Key::Esc})});
  EXPECT_EQ(listed(left()), (Texts{"..", "NAME"}));
  EXPECT_STREQ(GlobalOptions::CaseMod.data(), "ll");
  EXPECT_FALSE(GlobalOptions::CaseModRecurse);
}

TEST_F(CaseCommandTest, TaggedFilesAreCountedAndKeepTheRest) {
  for (const char* name : {"left/ONE", "left/TWO", "left/THREE"}) file(name);
  show("ONE");
  for (const char* name : {"ONE", "TWO"}) tag(name);
  changeCase({dialog({Key::Enter}, "case_tagged")});
  EXPECT_TRUE(dir.exists("left/one"));
  EXPECT_TRUE(dir.exists("left/two"));
  EXPECT_TRUE(dir.exists("left/THREE"));
}

TEST_F(CaseCommandTest, ATakenNameIsToldAndNothingIsReplaced) {
  file("left/NAME", "big");
  file("left/name", "small");
  show("NAME");
  changeCase({dialog({Key::Enter}), {"File exists (17)", {Key::Code(Answer::Skip)}}});
  EXPECT_EQ(dir.read("left/NAME"), "big");
  EXPECT_EQ(dir.read("left/name"), "small");
}

TEST_F(CaseCommandTest, ADirectoryIsRenamedAndTheTreeIsTold) {
  dir.makeDir("left/DIRECTORY");
  file("left/DIRECTORY/INSIDE");
  show("DIRECTORY");
  GlobalOptions::CaseModRecurse = true;
  TreeLog log;
  changeCase({dialog({Key::Enter})});
  EXPECT_TRUE(dir.exists("left/directory/INSIDE"));
  EXPECT_EQ(
      log.calls,
      (Texts{"renamed " + dir.path("left/DIRECTORY") + " " + dir.path("left/directory"), "save"}));
}

TEST_F(CaseCommandTest, TheOptionsSayWhatIsChanged) {
  dir.makeDir("left/Directory");
  file("left/Directory/File");
  show("Directory");
  // Recurse, and no directories.
  changeCase({dialog({Key::Tab, Key::Tab, Key::Space, Key::Down, Key::Space, Key::Enter})});
  EXPECT_TRUE(dir.exists("left/Directory/file"));
  EXPECT_TRUE(GlobalOptions::CaseModRecurse);
  EXPECT_FALSE(GlobalOptions::CaseModDirs);
  EXPECT_TRUE(GlobalOptions::CaseModFiles);
}

TEST_F(CaseCommandTest, NothingHappensOnTheParent) {
  show("");
  ASSERT_EQ(currentName(left()), "..");
  run([&] { caseCommand(left()); });
}

TEST_F(CaseCommandTest, AQuestionStandsOverTheFinishedWindows) {
  for (const char* name : {"left/A", "left/B", "left/b"}) file(name);
  show("A");
  for (const char* name : {"A", "B"}) tag(name);
  changeCase({dialog({Key::Enter}), {"File exists (17)", {Key::Code(Answer::Skip)}, "case_error"}});
  EXPECT_TRUE(dir.exists("left/a"));
}

TEST_F(CaseCommandTest, TheWindowsShowTheDirectoryTheCountAndTheBar) {
  ManualClock clock;
  CaseWindow window(clock);
  window.open(L"/some/directory", 4);
  window.showDone(1);
  window.complete();
  expectGoldenText("case_bar", screenText());
  window.showMembers("/some/directory/below/with a rather long name", 1234);
  expectGoldenText("case_members", screenText());
  window.closeMembers();
  window.close();
  EXPECT_FALSE(shows("Changing"));
}

TEST_F(CaseCommandTest, TheDialogFitsALargeScreen) {
  console->setGeometry(132, 50, Estring(), 0);
  fetchScreenSize();
  file("left/a name that is much longer than the dialog is wide.txt");
  show("a name that is much longer than the dialog is wide.txt");
  changeCase({dialog({Key::Esc}, "case_large")});
}
