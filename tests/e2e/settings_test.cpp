// Settings that outlive the program.

#include <pwd.h>
#include <unistd.h>
#include <csignal>

#include "console/console.h"
#include "e2e/program_test.h"
#include "options/colours.h"
#include "options/options.h"
#include "panels/model/panel_pair.h"
#include "support/as_user.h"

namespace {

class Settings : public ProgramTest {
 protected:
  void writeIni(const std::string& text) {
    home().makeDir(".tdx");
    home().write(".tdx/td.ini", text);
  }
  std::string ini() const { return home().read(".tdx/td.ini"); }
  bool says(const std::string& line) const {
    return ("\n" + ini()).find("\n" + line + "\r\n") != std::string::npos;
  }
  void saveByKey() {
    press(XK_F9, {XK_Shift_L});
    expectSoon("the file", [this] { return ini().ends_with("\r\n"); });
  }
  void chooseInOptions(char letter) {
    press(XK_F9);
    type("o");
    type(std::string(1, letter));
  }
};

// A td.ini as somebody wrote it over the years.
const std::string LongUsed =
    "; my settings\n"
    "Hidden=ON\n"
    "  clock = on  \n"
    "*.txt: edit !\n"
    "Foo=1\n"
    "[Colours]\n"
    "*.c | *.h: bright yellow\n"
    "%size>1m: bright red\n"
    "[Directory Colours]\n"
    "src: white on blue\n"
    "[Environment]\n"
    "TDBASE=~/base\n"
    "TDPATH=$TDBASE/bin\n"
    "[General Options]\n"
    "LeftSort=rname\n"
    "RightType=info\n"
    "Lines=30\n"
    "Colours=27 48 30 62 26 32 7 112 79 48 3 63 48 15 14 7 27 48\n"
    "d5=/tmp\n"
    "[Archiver:NEW]\n"
    "StartupSide=L";

// Each start is a process of its own.
TEST_F(Settings, ChangedByKeysAndSavedTheyAreThereAtTheNextStart) {
  left().write(".hidden", "");
  left().write("b", "");
  EXPECT_EQ(runInChild([this] {
              start();
              press(XK_h, {XK_Control_L});
              expectText(".hidden");
              press(XK_F1, {XK_Alt_L, XK_Shift_L});
              press(XK_F2, {XK_Control_L});
              press(XK_4, {XK_Control_L, XK_Shift_L});
              press(XK_F9, {XK_Alt_L});
              expectSoon("50 lines", [] { return console->rows() == 50; });
              saveByKey();
              EXPECT_TRUE(says("Lines=0")) << "only a configured number of lines is written";
              EXPECT_EQ(quit(), 0);
            }),
            0);
  for (const char* line :
       {"Hidden=on", "LeftStyle=brief", "RightStyle=full", "LeftShowing=on", "RightShowing=off"}) {
    EXPECT_TRUE(says(line)) << line;
  }
  EXPECT_TRUE(says("d4=" + left().path()));
  EXPECT_EQ(runInChild([this] {
              start();
              expectText(".hidden");
              EXPECT_EQ(console->rows(), 25);
              EXPECT_EQ(panelPair().side[0].style, PanelStyle::Brief);
              EXPECT_EQ(row(40, 5, 40), std::string(40, ' ')) << screen();
              type("cd /");
              press(XK_Return);
              expectSoon("the root", [this] { return row(0, 23, 2) == "/>"; });
              press(XK_4, {XK_Control_L});
              expectSoon("the stored directory", [this] {
                return row(0, 23, static_cast<int>(left().path().size()) + 1) ==
                       left().path() + ">";
              });
              EXPECT_EQ(quit(), 0);
            }),
            0);
}

TEST_F(Settings, ALongUsedFileIsTakenAsItStands) {
  left().write(".hidden.c", "");
  left().write("plain", "");
  left().makeDir("src");
  writeIni(LongUsed);
  startPlain({"-l", left().path(), "-r", right().path()}, FirstScreen::Box);
  expectText("Bad directive (Foo) in td.ini, line 5");
  press(XK_Return);
  expectNoText("Bad directive");
  expectText("10Quit");
  EXPECT_EQ(console->rows(), 30);
  expectText(".hidden.c");
  expectText("INFO");
  const auto attrOf = [this](const std::string& name) {
    for (int y = 1; y < 25; ++y) {
      if (row(1, y, static_cast<int>(name.size())) == name) return attrAt(1, y);
    }
    return -1;
  };
  EXPECT_EQ(attrOf(".hidden.c"), 0x1E);
  EXPECT_EQ(attrOf("src"), 0x17);
  EXPECT_EQ(attrOf("plain"), 0x1B);
  saveByKey();
  for (const char* line :
       {"*.txt: edit !", "*.c | *.h: bright yellow", "%size>1m: bright red", "src: white on blue",
        "TDBASE=~/base", "TDPATH=$TDBASE/bin", "Hidden=on", "Clock=on", "LeftSort=rname",
        "RightType=info", "Lines=30", "d5=/tmp", "StartupSide=L"}) {
    EXPECT_TRUE(says(line)) << line;
  }
  EXPECT_EQ(home().read(".tdx/td.ini~"), LongUsed);
  EXPECT_EQ(home().mode(".tdx/td.ini~"), 0600u);
  press(XK_5, {XK_Control_L});
  expectSoon("the shortcut's directory", [this] { return row(0, 28, 5) == "/tmp>"; });
  EXPECT_EQ(quit(), 0);
}

TEST_F(Settings, TheMenuItemSavesToo) {
  start();
  chooseInOptions('s');
  expectSoon("the file", [this] { return says("Hidden=off"); });
  EXPECT_EQ(home().mode(".tdx"), 0700u);
  EXPECT_EQ(home().mode(".tdx/td.ini"), 0600u);
  EXPECT_EQ(quit(), 0);
}

TEST_F(Settings, ShortcutsStoredByKeyAreSaved) {
  start();
  press(XK_3, {XK_Control_L, XK_Shift_L});
  press(XK_Tab);
  press(XK_3, {XK_Control_L});
  expectSoon("the stored directory", [this] {
    return row(0, 23, static_cast<int>(left().path().size()) + 1) == left().path() + ">";
  });
  saveByKey();
  EXPECT_TRUE(says("d3=" + left().path()));
  EXPECT_TRUE(says("StartupSide=R"));
  EXPECT_EQ(quit(), 0);
}

TEST_F(Settings, WithoutAutoSaveTheEndWritesNothing) {
  start();
  press(XK_h, {XK_Control_L});
  EXPECT_EQ(quit(), 0);
  EXPECT_FALSE(home().exists(".tdx/td.ini"));
}

TEST_F(Settings, AutoSaveSavesWhenTheProgramIsToldToEnd) {
  writeIni("AutoSave=on\n");
  left().write(".hidden", "");
  start();
  press(XK_h, {XK_Control_L});
  expectText(".hidden");
  kill(getpid(), SIGTERM);
  EXPECT_EQ(waitForEnd(), 0);
  EXPECT_TRUE(says("Hidden=on"));
}

TEST_F(Settings, AFontThatIsNotThereLeavesEachCellInItsPlace) {
  writeIni("FontFamily=No Such Font At All\nFontSize=16\nColumns=90\n");
  start();
  EXPECT_EQ(console->columns(), 90);
  EXPECT_GE(console->cellHeight(), 16);
  EXPECT_EQ(row(24).substr(0, 5), "1Help");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Settings, AnUnreadableFileIsToldAndThePanelsComeUp) {
  home().makeDir(".tdx");
  home().makeDir(".tdx/td.ini");
  startPlain({"-l", left().path()}, FirstScreen::Box);
  expectText("Is a directory");
  press(XK_Return);
  expectText("10Quit");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Settings, AFileGivenAtTheStartHasItsCompanionsBeside) {
  left().write(".hidden", "");
  right().write("my.ini", "Hidden=on\n");
  start({right().path("my.ini")});
  expectText(".hidden");
  type("cd /");
  press(XK_Return);
  expectSoon("the root", [this] { return row(0, 23, 2) == "/>"; });
  press(XK_F9, {XK_Shift_L});
  expectSoon("the saved file",
             [this] { return right().read("my.ini").find("Hidden=on\r\n") != std::string::npos; });
  EXPECT_EQ(right().read("my.hst"), "cd /\r\n");
  EXPECT_EQ(right().names(), (std::vector<std::string>{"my.hst", "my.ini"}));
  EXPECT_FALSE(home().exists(".tdx"));
  EXPECT_EQ(quit(), 0);
}

TEST_F(Settings, WithoutAnyHomeTheStartSaysOnceThatNothingIsKept) {
  constexpr uid_t nobodyKnows = 54321;
  left().openToAll();
  right().openToAll();
  const int status = runInChild([this] {
    if (geteuid() == 0) {
      ASSERT_EQ(setuid(nobodyKnows), 0);
    }
    if (getpwuid(geteuid()) != nullptr) return;  // an ordinary user has a home
    unsetenv("HOME");
    startPlain({"-l", left().path(), "-r", right().path()}, FirstScreen::Box);
    expectText("No home directory: nothing will be kept");
    press(XK_Return);
    expectNoText("No home directory");
    press(XK_F9, {XK_Shift_L});
    type("cd /");
    press(XK_Return);
    expectSoon("the root", [this] { return row(0, 23, 2) == "/>"; });
    EXPECT_EQ(quit(), 0);
  });
  EXPECT_EQ(status, 0);
}

TEST_F(Settings, EditAssociationsReadsTheColoursAgain) {
  left().write("some.c", "");
  start();
  writeIni("[Colours]\n");
  press(XK_F9);
  type("c");
  type("a");
  expectText("/td.ini ");
  press(XK_Next, {XK_Control_L});
  type("*.c: bright red");
  press(XK_Return);
  press(XK_F10, {XK_Shift_L});
  expectSoon("the new colour", [this] {
    for (int y = 1; y < 20; ++y) {
      if (row(1, y, 4) == "some") return attrAt(1, y) == 0x1C;
    }
    return false;
  });
  EXPECT_EQ(quit(), 0);
}

TEST_F(Settings, TheConfigurationDialogGivesTheScreenItsNewSizeAndTheFileItsNewValues) {
  writeIni("Clock=on\r\n");
  start();
  const std::string clock = row(74, 0, 6);
  chooseInOptions('c');
  expectText(" Configuration ");
  EXPECT_NE(row(74, 0, 6), clock) << "the clock is off as long as the dialog is up";
  type("less");
  for (int i = 0; i < 11; ++i) press(XK_Tab);
  type("50");
  press(XK_Return);
  expectSoon("the lines", [] { return console->rows() == 50; });
  expectNoText(" Configuration ");
  expectSoon("the clock", [&] { return row(76, 0, 2).find(':') != std::string::npos; });
  press(XK_F9, {XK_Shift_L});
  expectSoon("the file", [this] { return says("Lines=50"); });
  EXPECT_TRUE(says("Viewer=less"));
  EXPECT_TRUE(says("Clock=on"));
  EXPECT_EQ(quit(), 0);
}

TEST_F(Settings, NewColoursShowAtOnceAndAnOpenQuestionIsNotAskedAnyMore) {
  start();
  chooseInOptions('o');
  expectText("TD/X Colours");
  press(XK_Down);
  type("b");  // the active panel's title
  press(XK_Return);
  expectNoText("TD/X Colours");
  expectSoon("the new colour", [&] {
    for (int x = 1; x < 40; ++x) {
      if (attrAt(x, 0) == 0x40) return true;
    }
    return false;
  });
  chooseInOptions('n');
  expectText(" Confirmations ");
  for (int i = 0; i < 3; ++i) press(XK_Down);
  press(XK_space);
  press(XK_Return);
  expectNoText(" Confirmations ");
  press(XK_F10);
  EXPECT_EQ(waitForEnd(), 0);
}

}  // namespace
