// Keys and the cd of a typed line that take a panel to another directory.

#include <cerrno>
#include <cstdlib>
#include <filesystem>

#include "commander/command.h"
#include "commander/go_commands.h"
#include "commander/main_loop_test.h"
#include "commander/seam_log.h"
#include "foundation/path_info.h"
#include "language/environment.h"
#include "shell/logged_shell.h"
#include "support/fault_hook.h"

namespace {

class GoCommands : public MainLoopTest {
 protected:
  void SetUp() override {
    MainLoopTest::SetUp();
    leftDir.makeDir("sub");
    leftDir.makeDir("sub/deep");
    leftDir.write("sub/deep/bottom", "");
    leftDir.write("file", "");
    openPanels();
  }
  std::string place() { return bytes(panelPair().active().path); }
  std::string in(const std::string& name) const { return leftDir.path(name); }
  void goTo(const std::string& name) { goToPath(left(), leftDir.wide(name)); }

  void execute(const std::string& text) {
    loop.line.clear();
    type(text);
    press(Key::Enter);
  }

  // Put on the line by its key, the name of a directory leads cd there.
  void expectFoundByCd(const std::string& name) {
    leftDir.makeDir(name);
    goTo("");
    cursorTo(name);
    loop.line.clear();
    press(Key::CtrlEnter);
    const Westring quoted = loop.line.text();
    loop.line.setText(L"cd " + quoted);
    press(Key::Enter);
    EXPECT_EQ(place(), in(name));
  }
};

// ---- keys

TEST_F(GoCommands, EnterGoesDownAndBackToTheSamePlace) {
  cursorTo("sub");
  press(Key::Enter);
  EXPECT_EQ(place(), in("sub"));
  cursorTo("..");
  press(Key::Enter);
  EXPECT_EQ(place(), leftDir.path());
  EXPECT_EQ(currentName(left()), "sub");
}

TEST_F(GoCommands, CtrlPageUpGoesUpAndDrawsWhatIsThere) {
  goTo("sub/deep");
  press(Key::CtrlPageUp);
  EXPECT_EQ(place(), in("sub"));
  EXPECT_EQ(currentName(left()), "deep");
  EXPECT_EQ(rowText(1, 2, 4), "deep");
  EXPECT_FALSE(shows("bottom"));
}

TEST_F(GoCommands, CtrlPageDownEntersDirectoriesAndArchivesAndNothingElse) {
  LoggedShell shell;
  leftDir.chmod("file", 0755);
  cursorTo("file");
  const std::string box = dialogScreen("Invalid Directory", [&] { press(Key::CtrlPageDown); });
  EXPECT_NE(box.find("/file"), std::string::npos) << box;
  EXPECT_EQ(place(), leftDir.path());
  EXPECT_EQ(currentName(left()), "file");
  cursorTo("sub");
  press(Key::CtrlPageDown);
  EXPECT_EQ(place(), in("sub"));
  enterArchive();
  press(Key::CtrlPageUp);
  EXPECT_EQ(place(), leftDir.path());
  EXPECT_EQ(currentName(left()), "pack.zip");
  press(Key::CtrlPageDown);
  EXPECT_EQ(place(), in("pack.zip"));
  EXPECT_TRUE(shell.take().empty());
}

TEST_F(GoCommands, CtrlBackslashGoesToTheRoot) {
  goTo("sub");
  left().depth = 4;
  press(Key::CtrlBackslash, Ctrl);
  EXPECT_EQ(place(), "/");
  EXPECT_EQ(left().currentIndex(), 0);
  EXPECT_EQ(left().depth, -1);
}

TEST_F(GoCommands, CtrlBackslashAtTheRootChangesNothing) {
  press(Key::CtrlBackslash, Ctrl);
  press(Key::Down);
  const int index = left().currentIndex();
  press(Key::CtrlBackslash, Ctrl);
  EXPECT_EQ(left().currentIndex(), index);
}

TEST_F(GoCommands, CtrlBackslashInAnArchiveLeavesItForItsDirectory) {
  enterArchive();
  press(Key::CtrlBackslash, Ctrl);
  EXPECT_EQ(place(), leftDir.path());
  EXPECT_EQ(left().archive, nullptr);
  EXPECT_EQ(currentName(left()), "pack.zip");
}

TEST_F(GoCommands, CtrlShiftBackslashGoesToTheOtherPanelsDirectory) {
  press(Key::CtrlShiftBackslash, Ctrl | Shift);
  EXPECT_EQ(place(), rightDir.path());
  goTo("");
  press(Key::CtrlBackslash, Ctrl | Shift);
  EXPECT_EQ(place(), rightDir.path());
}

TEST_F(GoCommands, CtrlUnderscoreGoesBackAndForth) {
  goTo("sub");
  goTo("sub/deep");
  press(Key::CtrlUnderscore, Ctrl);
  EXPECT_EQ(place(), in("sub"));
  press(Key::CtrlUnderscore, Ctrl);
  EXPECT_EQ(place(), in("sub/deep"));
}

TEST_F(GoCommands, CtrlUnderscoreFindsTheCursorWhereItWas) {
  leftDir.write("last", "");
  press(Key::ctrl('r'));
  screenAfter({Key::End, Key::CtrlBackslash, Key::CtrlUnderscore});
  EXPECT_EQ(place(), leftDir.path());
  EXPECT_EQ(currentName(left()), "last");
}

TEST_F(GoCommands, CtrlUnderscoreWithNowhereToGoBackDoesNothing) {
  left().previousPath = L"";
  press(Key::CtrlUnderscore, Ctrl);
  EXPECT_EQ(place(), leftDir.path());
  left().previousPath = L"/no/such/place";
  press(Key::CtrlUnderscore, Ctrl);
  EXPECT_EQ(place(), leftDir.path());
}

TEST_F(GoCommands, AltHomeGoesHome) {
  const char* before = getenv("HOME");
  const std::string home = before ? before : "";
  setenv("HOME", rightDir.path().c_str(), 1);
  press(Key::AltHome);
  EXPECT_EQ(place(), rightDir.path());
  before ? setenv("HOME", home.c_str(), 1) : unsetenv("HOME");
}

TEST_F(GoCommands, EnterOnATreeLineShowsItsDirectoryInTheOtherPanel) {
  const OnePathTree tree(leftDir.wide("sub"));
  left().style = PanelStyle::Tree;
  left().top = left().cursor = 0;
  left().entries.clear();
  left().entries.add(makeEntry(L"sub", 0, SortGroup::Directory));
  press(Key::Enter);
  EXPECT_EQ(bytes(right().path), in("sub"));
  EXPECT_EQ(bytes(left().path), leftDir.path());
  // The other keys mean the line's directory as well.
  press(Key::ctrl('f'), Ctrl);
  EXPECT_EQ(line(), in("sub"));
  press(Key::ctrlDigit(3) | Key::ShiftedKey, Ctrl | Shift);
  EXPECT_EQ(bytes(GlobalOptions::directoryShortcuts[3]), in("sub"));
  press(Key::ctrlDigit(3), Ctrl);
  EXPECT_EQ(bytes(right().path), in("sub"));
}

// ---- shortcuts

TEST_F(GoCommands, ShortcutsAreStoredAndFollowed) {
  for (int digit = 0; digit <= 9; ++digit) {
    goTo("sub");
    press(Key::ctrlDigit(digit) | Key::ShiftedKey, Ctrl | Shift);
    EXPECT_EQ(bytes(GlobalOptions::directoryShortcuts[digit]), in("sub"));
    goTo("");
    left().depth = 2;
    press(Key::ctrlDigit(digit), Ctrl);
    EXPECT_EQ(place(), in("sub")) << digit;
    EXPECT_EQ(left().depth, -1);
    EXPECT_EQ(left().currentIndex(), 0);
  }
}

TEST_F(GoCommands, KeypadDigitsAreShortcutsToo) {
  goTo("sub");
  press(Key::ctrlKeypadDigit(5) | Key::ShiftedKey, Ctrl | Shift);
  goTo("");
  press(Key::ctrlKeypadDigit(5), Ctrl);
  EXPECT_EQ(place(), in("sub"));
  EXPECT_EQ(bytes(GlobalOptions::directoryShortcuts[5]), in("sub"));
}

TEST_F(GoCommands, ShortcutsExpandTildeAndVariables) {
  sessionEnvironment().set("TD_TEST_PLACE", in("sub").c_str());
  GlobalOptions::directoryShortcuts[1] = L"$TD_TEST_PLACE/deep";
  press(Key::ctrlDigit(1), Ctrl);
  EXPECT_EQ(place(), in("sub/deep"));
  sessionEnvironment().set("TD_TEST_PLACE", "");
  sessionEnvironment().set("HOME", rightDir.path().c_str());
  GlobalOptions::directoryShortcuts[2] = L"~";
  press(Key::ctrlDigit(2), Ctrl);
  EXPECT_EQ(place(), rightDir.path());
  sessionEnvironment().set("HOME", "");
}

TEST_F(GoCommands, AShortcutLeadsToTheDirectoryOfExactlyItsName) {
  sessionEnvironment().set("TD_TEST_PLACE", in("sub").c_str());
  for (const std::string name : {"...", "a:b", "a\\b", "$TD_TEST_PLACE", "~"}) {
    leftDir.makeDir(name);
    goTo("");
    GlobalOptions::directoryShortcuts[3] = leftDir.wide(name);
    press(Key::ctrlDigit(3), Ctrl);
    EXPECT_EQ(place(), in(name));
    goTo("");
    GlobalOptions::directoryShortcuts[3] = decodeFileName(name.c_str());
    press(Key::ctrlDigit(3), Ctrl);
    EXPECT_EQ(place(), in(name));
  }
  sessionEnvironment().set("TD_TEST_PLACE", "");
}

TEST_F(GoCommands, AStoredPathLeadsToTheDirectoryOfExactlyItsNameElseByTheRules) {
  leftDir.makeDir("...");
  SeamLog log;
  log.connect();
  const auto choose = [&](const Westring& path) {
    log.directory = path;
    press(Key::ShiftAltF8);
  };
  choose(leftDir.wide("..."));
  EXPECT_EQ(place(), in("..."));
  choose(leftDir.wide("sub\\deep"));
  EXPECT_EQ(place(), in("sub/deep"));
}

TEST_F(GoCommands, AChosenDirectoryThatIsGoneSaysSo) {
  SeamLog log;
  log.connect();
  log.directory = L"/no/such/place";
  const std::string box = dialogScreen("Invalid directory", [&] { press(Key::ShiftAltF8); });
  EXPECT_NE(box.find("/no/such/place"), std::string::npos) << box;
  EXPECT_EQ(place(), leftDir.path());
}

TEST_F(GoCommands, ABadShortcutSaysSo) {
  GlobalOptions::directoryShortcuts[7] = L"/no/such/place";
  const std::string box =
      dialogScreen("Invalid Directory", [&] { press(Key::ctrlDigit(7), Ctrl); });
  EXPECT_NE(box.find("/no/such/place"), std::string::npos);
  EXPECT_EQ(place(), leftDir.path());
}

TEST_F(GoCommands, AnUnsetShortcutGoesNowhere) {
  press(Key::ctrlDigit(8), Ctrl);
  EXPECT_EQ(place(), leftDir.path());
}

// ---- cd

TEST_F(GoCommands, CdTakesEveryFormThatPeopleType) {
  leftDir.makeDir("with blank");
  leftDir.makeDir("back\\slash");
  leftDir.makeDir("a:colon");
  leftDir.makeDir("quo\"te");
  leftDir.makeDir("-dash");
  leftDir.makeDir("$dollar");
  sessionEnvironment().set("TD_TEST_PLACE", in("sub").c_str());
  sessionEnvironment().set("HOME", rightDir.path().c_str());
  const struct {
    const char* typed;
    std::string result;
  } rows[] = {
      {"cd sub", in("sub")},
      {"CD sub", in("sub")},
      {"  cd   sub  ", in("sub")},
      {"cd sub/", in("sub")},
      {"cd sub/deep", in("sub/deep")},
      {"cd sub\\deep", in("sub/deep")},
      {"cd ./sub", in("sub")},
      {"cd sub/../sub", in("sub")},
      {"cd \"sub\"", in("sub")},
      {"cd 'sub'", in("sub")},
      {"cd with blank", in("with blank")},
      {"cd \"with blank\"", in("with blank")},
      {"cd with\\ blank", in("with blank")},
      {"cd 'with blank'", in("with blank")},
      {"cd back\\\\slash", in("back\\slash")},
      {"cd a:colon", in("a:colon")},
      {"cd quo\\\"te", in("quo\"te")},
      {"cd ./-dash", in("-dash")},
      {"cd -dash", in("-dash")},
      {"cd \\$dollar", in("$dollar")},
      {"cd $TD_TEST_PLACE", in("sub")},
      {"cd $TD_TEST_PLACE/deep", in("sub/deep")},
      {"cd ~", rightDir.path()},
      {"cd /", "/"},
      {"cd\\", "/"},
      {"cd ..", std::filesystem::path(leftDir.path()).parent_path().string()},
      {"cd..", std::filesystem::path(leftDir.path()).parent_path().string()},
      {"cd.", leftDir.path()},
      {"cd /dev", "/dev"},
  };
  for (const auto& row : rows) {
    goTo("");
    execute(row.typed);
    EXPECT_EQ(place(), row.result) << row.typed;
    EXPECT_EQ(line(), "") << row.typed;
  }
  sessionEnvironment().set("TD_TEST_PLACE", "");
  sessionEnvironment().set("HOME", "");
}

TEST_F(GoCommands, ANamePutOnTheLineByItsKeyIsFoundByCd) {
  for (const std::string name :
       {"plain", "two words", "tab\there", "semi;colon", "back\\slash", "quo'te", "dou\"ble",
        "$HOME", "~", "!x", "-rf", "#hash", "a:b", "\xFFraw", "世界"}) {
    expectFoundByCd(name);
  }
}

TEST_F(GoCommands, ANameOnTheLineIsNoMacro) {
  for (const std::string name : {"!", "!x", "a!b", "a!!b", "end!", "!i", "two !t"}) {
    expectFoundByCd(name);
  }
}

TEST_F(GoCommands, APathOnTheLineIsNoMacro) {
  leftDir.makeDir("wow!x");
  goTo("wow!x");
  loop.line.clear();
  press(Key::Esc, ShiftState::Ctrl);
  const Westring inserted = loop.line.text();
  goTo("");
  loop.line.setText(L"cd " + inserted);
  press(Key::Enter);
  EXPECT_EQ(place(), in("wow!x"));
}

TEST_F(GoCommands, CdResetsPositionAndType) {
  left().depth = 3;
  press(Key::Down);
  execute("cd sub");
  EXPECT_EQ(left().currentIndex(), 0);
  EXPECT_EQ(left().depth, -1);
  EXPECT_TRUE(left().isFiles());
}

TEST_F(GoCommands, CdWorksOnTheOtherPanelBesideInfoAndTrees) {
  press(MenuCode::LeftInfo);
  execute("cd /dev");
  EXPECT_EQ(bytes(right().path), "/dev");
  press(MenuCode::LeftTree);
  execute("cd /proc");
  EXPECT_EQ(bytes(right().path), "/proc");
  EXPECT_EQ(bytes(left().path), leftDir.path());
}

TEST_F(GoCommands, CdToNowhereShowsThePathAndStays) {
  const std::string box = dialogScreen("Invalid directory", [&] { execute("cd nowhere"); });
  EXPECT_NE(box.find(leftDir.path() + "/nowhere"), std::string::npos);
  EXPECT_EQ(place(), leftDir.path());
  dialogScreen("Invalid directory", [&] { execute("cd file"); });
  EXPECT_EQ(line(), "");
}

TEST_F(GoCommands, CdToWhatIsNoPathSaysInvalidPath) {
  dialogScreen("Invalid path", [&] { execute("cd no:path"); });
  EXPECT_EQ(place(), leftDir.path());
}

TEST_F(GoCommands, CdAsksTheTreeForAName) {
  struct Tree : DirectoryTree {
    Westring find(const Panel&, const Westring& name) override {
      return bytes(name) == "deep" ? deep : Westring();
    }
    Westring deep;
  } tree;
  tree.deep = leftDir.wide("sub/deep");
  directoryTree().connect(tree);
  execute("cd deep");
  directoryTree().disconnect();
  EXPECT_EQ(place(), in("sub/deep"));
}

TEST_F(GoCommands, CdLeadsToTheDirectoryOfExactlyThatName) {
  sessionEnvironment().set("TD_TEST_PLACE", in("sub").c_str());
  for (const char* name : {"...", "ab:c", "a\\b", "$TD_TEST_PLACE", "~", "qu\"ote", "sub\\deep"}) {
    leftDir.makeDir(name);
    goTo("");
    execute("cd " + std::string(name));
    EXPECT_EQ(place(), in(name));
  }
  for (const char* name : {"...", "a\\b"}) {
    goTo("");
    execute("cd \"" + std::string(name) + "\"");
    EXPECT_EQ(place(), in(name));
  }
  sessionEnvironment().set("TD_TEST_PLACE", "");
}

TEST_F(GoCommands, ACommandNeverRunsInAnotherDirectory) {
  LoggedShell shell;
  goTo("sub");
  {
    FaultHook refuse("chdir", EACCES);
    const std::string box = dialogScreen("Permission denied", [&] { execute("rm *"); });
    EXPECT_NE(box.find(in("sub")), std::string::npos);
  }
  EXPECT_TRUE(shell.take().empty());
  EXPECT_EQ(line(), "rm *");
  EXPECT_EQ(place(), in("sub"));
  press(Key::Enter);
  EXPECT_EQ(shell.take(), std::vector<std::string>{"rm *"});
  EXPECT_EQ(bytes(currentDir()), in("sub"));
}

TEST_F(GoCommands, WhereTheDirectoryIsGoneACommandLeadsToTheNearestAboveIt) {
  LoggedShell shell;
  goTo("sub/deep");
  std::filesystem::remove_all(in("sub"));
  const std::string box = dialogScreen("No such file or directory", [&] { execute("rm *"); });
  EXPECT_NE(box.find(in("sub/deep")), std::string::npos);
  EXPECT_TRUE(shell.take().empty());
  EXPECT_EQ(line(), "rm *");
  EXPECT_EQ(place(), leftDir.path());
  EXPECT_EQ(bytes(currentDir()), leftDir.path());
}

TEST_F(GoCommands, CdAndOtherCommandsGoIntoTheHistory) {
  LoggedShell shell;
  execute("cd sub");
  EXPECT_EQ(stored(commandHistory()), std::vector<std::string>{"cd sub"});
  execute("make all");
  EXPECT_EQ(commandHistory().count(), 2);
  EXPECT_EQ(shell.take(), std::vector<std::string>{"make all"});
  execute("cd");  // alone it belongs to the shell
  EXPECT_EQ(line(), "");
  EXPECT_EQ(shell.take(), std::vector<std::string>{"cd"});
}

TEST_F(GoCommands, TheShellGetsTheLine) {
  LoggedShell shell;
  execute("  make all ");
  EXPECT_EQ(line(), "");
  GlobalOptions::Background = L"nohup";
  type("make");
  press(Key::AltEnter, ShiftState::Alt);
  GlobalOptions::Background = L"";
  type("cd sub");
  press(Key::AltEnter, ShiftState::Alt);
  EXPECT_EQ(shell.take(), (std::vector<std::string>{"make all", "nohup make"}));
  EXPECT_EQ(place(), in("sub"));
  execute("   ");
  EXPECT_EQ(line(), "");
  EXPECT_TRUE(shell.take().empty());
}

}  // namespace
