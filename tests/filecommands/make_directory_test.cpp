#include "filecommands/command_test.h"
#include "support/fault_hook.h"

namespace {

class MakeDirectoryTest : public CommandTest {
 protected:
  void make(const std::vector<Step>& steps) {
    play(steps, [&] { makeDirectoryCommand(0); });
  }
  static Step name(const std::string& text) {
    return {"Create the directory", {Key::Enter}, "", text};
  }
};

}  // namespace

TEST_F(MakeDirectoryTest, MakesOneLevelAndPutsTheCursorOnIt) {
  file("left/a");
  show("a");
  TreeLog log;
  make({{"Create the directory", {Key::Enter}, "make_directory", " new dir "}});
  EXPECT_TRUE(S_ISDIR(statusOf(dir.path("left/new dir")).st_mode));
  EXPECT_EQ(currentName(left()), "new dir");
  EXPECT_EQ(log.calls, (Texts{"made " + dir.path("left/new dir"), "save"}));
  EXPECT_EQ(screenText(), before_);
}

TEST_F(MakeDirectoryTest, EscAndAnEmptyFieldMakeNothing) {
  show("");
  make({{"Create the directory", {Key::Esc}, "", "x"}});
  make({{"Create the directory", {Key::Enter}}});
  EXPECT_TRUE(contents(dir.path("left")).empty());
}

TEST_F(MakeDirectoryTest, AMissingDirectoryBetweenIsFileNotFound) {
  show("");
  make({name("a/b"), {"File not found", {Key::Enter}, "make_directory_error"}});
  EXPECT_FALSE(dir.exists("left/a"));
}

TEST_F(MakeDirectoryTest, AnExistingNameIsToldInTheSystemsWordsAndRetryTriesAgain) {
  dir.makeDir("left/d");
  show("d");
  make({name("d"),
        {"File exists (17)", {Key::Code(Answer::Retry)}},
        {"File exists (17)", {Key::Code(Answer::Skip)}}});
}

TEST_F(MakeDirectoryTest, RefusedWhereSomethingStandsTellsWhatItIs) {
  dir.makeDir("left/d");
  file("left/f");
  show("d");
  const FaultHook faults("mkdir", EACCES);
  make({name("d"), {"Directory already exists", {Key::Enter}}});
  make({name("f"), {"File already exists named", {Key::Enter}}});
  make({name("n"), {"Access Denied", {Key::Esc}}});
}

TEST_F(MakeDirectoryTest, ASlashAtTheEndMakesNoOtherDirectory) {
  file("left/a");
  show("a");
  TreeLog log;
  make({name("new//")});
  EXPECT_TRUE(dir.exists("left/new"));
  EXPECT_EQ(currentName(left()), "new");
  EXPECT_EQ(log.calls, (Texts{"made " + dir.path("left/new"), "save"}));
}

TEST_F(MakeDirectoryTest, AnAbsoluteTextStandsForItself) {
  file("left/a");
  show("a");
  make({name(dir.path("right/absolute"))});
  EXPECT_TRUE(dir.exists("right/absolute"));
  EXPECT_EQ(currentName(left()), "a");
}

TEST_F(MakeDirectoryTest, TheTextIsARealNameWithColonsAndBackslashes) {
  show("");
  make({name("12:30 a\\b")});
  EXPECT_TRUE(dir.exists("left/12:30 a\\b"));
}

TEST_F(MakeDirectoryTest, AnInfoPanelMakesItInTheOtherPanelsDirectory) {
  show("");
  left().type = PanelType::Info;
  make({name("here")});
  EXPECT_TRUE(dir.exists("right/here"));
}

TEST_F(MakeDirectoryTest, ATreePanelMakesItBelowItsSelectedDirectory) {
  show("");
  left().style = PanelStyle::Tree;
  make({name("nowhere")});
  EXPECT_TRUE(contents(dir.path("left")).empty()) << "no tree, no place";
  const OnePathTree tree(dir.wide("right"));
  make({name("there")});
  EXPECT_TRUE(dir.exists("right/there"));
}
