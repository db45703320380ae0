#include "tools/user_menu.h"

#include "foundation/data_paths.h"
#include "language/environment.h"
#include "shell/logged_shell.h"
#include "shell/shell_test.h"

namespace {

class UserMenuTest : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    setenv("HOME", home.path().c_str(), 1);
    setProgramPath(L"/usr/bin/td");
    home.makeDir(".tdx");
    leftDir.write("file.txt", "");
    leftDir.write("other", "");
    leftDir.write("with blank", "");
    leftDir.makeDir("sub");
    leftDir.makeDir("sub/deep");
    openPanels();
    cursorTo("file.txt");
  }
  // The panels show names of this test's own.
  void blankScreen() { console->fillBlank(0, 0, console->columns(), console->rows(), 7); }
  void writeMenu(const std::string& text) { leftDir.write("td.mnu", text); }
  // Keys that wait when the menu opens.
  void openWith(const std::vector<Key::Code>& keys, UserMenuKind kind = UserMenuKind::OfDirectory) {
    for (const Key::Code key : keys) queueKey(key);
    userMenu(0, kind);
    EXPECT_EQ(console->eventCount(), 0);
    drainEvents();
  }
  std::vector<std::string> run(const std::string& menu, const std::vector<Key::Code>& keys) {
    writeMenu(menu);
    openWith(keys);
    return shell.take();
  }
  void tag(const std::string& name) {
    for (entry* item : left().entries) {
      if (bytes(item->name()) == name) item->tagged = true;
    }
  }

  using Commands = std::vector<std::string>;
  TempDir home;
  LoggedShell shell;
};

constexpr char TwoLevels[] =
    "a: Archive the files\n  tar\nF5: Copy to the other side\n  copy\nm: More commands\n{\n"
    "x: First of them\n  first\nn: Still more\n{\nz: The last\n  last\n}\n}\nq: Nothing at all\n";

}  // namespace

TEST_F(UserMenuTest, WithoutAMenuNothingShows) {
  const std::string before = screenText();
  userMenu(0, UserMenuKind::OfDirectory);
  userMenu(0, UserMenuKind::Main);
  writeMenu("# only a note\n");
  userMenu(0, UserMenuKind::OfDirectory);
  EXPECT_EQ(screenText(), before);
}

TEST_F(UserMenuTest, TheWindowShowsKeysTitlesAndMarksOfSubmenus) {
  writeMenu(TwoLevels);
  blankScreen();
  const std::string screen =
      dialogScreen("Nothing at all", [] { userMenu(0, UserMenuKind::OfDirectory); });
  expectGoldenText("user_menu", screen);
}

TEST_F(UserMenuTest, ASubmenuStandsRightOfItsParentUnderItsOwnTitle) {
  writeMenu(TwoLevels);
  blankScreen();
  std::string screen;
  {
    Beside user([&] {
      queueKey('m');
      if (waitToShow("First of them")) queueKey('n');
      if (waitToShow("The last")) screen = screenText();
      for (int i = 0; i < 3; ++i) queueKey(Key::Esc);
    });
    userMenu(0, UserMenuKind::OfDirectory);
  }
  drainEvents();
  expectGoldenText("user_submenus", screen);
}

TEST_F(UserMenuTest, AKeyChoosesItsEntryInEitherCase) {
  EXPECT_EQ(run(TwoLevels, {'a'}), Commands{"tar"});
  EXPECT_EQ(run(TwoLevels, {'A'}), Commands{"tar"});
  EXPECT_EQ(run(TwoLevels, {Key::F5}), Commands{"copy"});
  EXPECT_EQ(run(TwoLevels, {'m', 'n', 'z'}), Commands{"last"});
}

TEST_F(UserMenuTest, OfSeveralEntriesWithOneKeyTheLastCounts) {
  EXPECT_EQ(run("a: One\n  one\na: Two\n  two\n", {'a'}), Commands{"two"});
}

TEST_F(UserMenuTest, TheCursorAndEnterChooseToo) {
  EXPECT_EQ(run(TwoLevels, {Key::Down, Key::Enter}), Commands{"copy"});
  EXPECT_EQ(run(TwoLevels, {Key::Down, Key::Down, Key::Enter, Key::Enter}), Commands{"first"});
}

TEST_F(UserMenuTest, EscClosesOneLevel) {
  EXPECT_EQ(run(TwoLevels, {'m', Key::Esc, 'a'}), Commands{"tar"});
  EXPECT_EQ(run(TwoLevels, {'m', Key::Esc, Key::Esc}), Commands{});
  EXPECT_EQ(run("m: Empty\n{\n}\na: One\n  one\n", {'m', 'a'}), Commands{"one"});
}

TEST_F(UserMenuTest, AnEntryWithNothingInItClosesTheMenu) {
  const std::string before = screenText();
  EXPECT_EQ(run(TwoLevels, {'q'}), Commands{});
  EXPECT_EQ(screenText(), before);
}

TEST_F(UserMenuTest, ItsCommandsRunInOrderWithTheirMacrosReplaced) {
  EXPECT_EQ(run("a: A\n  one !!\n  two !x !p\n  !!x\n", {'a'}),
            (Commands{"one !", "two file " + leftDir.path(), "!x"}));
}

TEST_F(UserMenuTest, ALineThatComesOutEmptyIsPassedOver) {
  EXPECT_EQ(run("a: A\n  !n\n  two\n", {'a'}), Commands{"two"});
}

TEST_F(UserMenuTest, ALineWithAFileMacroRunsForEachTaggedFileAndOthersOnce) {
  tag("other");
  tag("with blank");
  EXPECT_EQ(run("a: A\n  for !t\n  once !x\n", {'a'}),
            (Commands{"for other", "for with\\ blank", "once file"}));
}

TEST_F(UserMenuTest, WithoutTagsTheEntryUnderTheCursorIsMeant) {
  EXPECT_EQ(run("a: A\n  for !t\n", {'a'}), Commands{"for file.txt"});
}

TEST_F(UserMenuTest, ACancelledQuestionEndsTheSeries) {
  EXPECT_EQ(run("a: A\n  one\n  two !i\"Which one\"\n  three\n  cd sub\n", {'a', Key::Esc}),
            Commands{"one"});
  EXPECT_EQ(bytes(left().path), leftDir.path());
}

TEST_F(UserMenuTest, ACommandThatFailsDoesNotEndTheSeries) {
  sessionEnvironment().set("SHELL", "/bin/sh");
  run("a: A\n  false\n  touch made\n", {'a'});
  EXPECT_TRUE(leftDir.exists("made"));
}

TEST_F(UserMenuTest, AChangeOfDirectoryCountsAfterTheLastLine) {
  EXPECT_EQ(run("a: A\n  cd sub\n  first !p\n  cd deep\n  second !p\n", {'a'}),
            (Commands{"first " + leftDir.path(), "second " + leftDir.path()}));
  EXPECT_EQ(bytes(left().path), leftDir.path("sub/deep"));
}

TEST_F(UserMenuTest, AChangeOfDirectoryWithACommandBehindItIsTheShells) {
  EXPECT_EQ(run("a: A\n  cd sub && make\n  two\n", {'a'}), (Commands{"cd sub && make", "two"}));
  EXPECT_EQ(bytes(left().path), leftDir.path());
}

TEST_F(UserMenuTest, TheMenuOfTheDirectoryOrOneAboveComesBeforeTheMainOne) {
  home.write(".tdx/td.mnu", "a: Main\n  main\n");
  openWith({'a'});
  EXPECT_EQ(shell.take(), Commands{"main"});
  writeMenu("a: Here\n  here\n");
  openWith({'a'});
  EXPECT_EQ(shell.take(), Commands{"here"});
  goToPath(left(), leftDir.wide("sub/deep"));
  openWith({'a'});
  EXPECT_EQ(shell.take(), Commands{"here"});
  openWith({'a'}, UserMenuKind::Main);
  EXPECT_EQ(shell.take(), Commands{"main"});
}

TEST_F(UserMenuTest, AMenuInADirectoryThatOthersWriteIsNotTaken) {
  home.write(".tdx/td.mnu", "a: Main\n  main\n");
  writeMenu("a: Here\n  stranger\n");
  leftDir.openToAll();
  openWith({'a'});
  EXPECT_EQ(shell.take(), Commands{"main"});
}

TEST_F(UserMenuTest, AnIncludeThatCannotBeReadIsTold) {
  writeMenu("!include missing.mnu\n");
  const std::string screen =
      dialogScreen("Unable to open included menu", [] { userMenu(0, UserMenuKind::OfDirectory); });
  EXPECT_NE(screen.find("missing.mnu"), std::string::npos);
}

TEST_F(UserMenuTest, EscAtTheFirstBoxIsEnough) {
  EXPECT_EQ(run("!include one\n!include two\n!include td.mnu\na: A\n  one\n", {Key::Esc, 'a'}),
            Commands{"one"});
}

TEST_F(UserMenuTest, EnterAtEachBoxSeesThemAll) {
  EXPECT_EQ(run("!include one\n!include td.mnu\na: A\n  one\n", {Key::Enter, Key::Enter, 'a'}),
            Commands{"one"});
}

TEST_F(UserMenuTest, MoreEntriesThanRowsScroll) {
  std::string text;
  for (int i = 0; i < 100; ++i) text += "a: Entry " + std::to_string(i) + "\n";
  writeMenu(text + "z: Last\n  last\n");
  openWith({Key::End, Key::Enter});
  EXPECT_EQ(shell.take(), Commands{"last"});
}
