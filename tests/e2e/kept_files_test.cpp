// What a file command may not or need not replace is still there afterwards, whatever was answered.

#include <unistd.h>

#include "e2e/program_test.h"
#include "support/as_user.h"
#include "support/files.h"

namespace {

constexpr char ExistsQuestion[] = "File already exists, Overwrite?";
constexpr char Denied[] = "Access Denied";

// The program of a user whom the permissions of files hold back.
class RefusedMove : public ProgramTest {
 protected:
  void SetUp() override {
    for (const TempDir* directory : {&left(), &right(), &home()}) {
      ASSERT_TRUE(giveToUser(directory->path()));
    }
    ASSERT_TRUE(becomeUser());
    ProgramTest::SetUp();
    left().write("a", "new a");
    left().write("b", "new b");
    right().write("a", "old a");
    right().write("b", "old b");
  }

  // Nothing may be taken out of `directory` from now on, and all must stay as it is now.
  void startWithout(const std::string& directory) {
    left().chmod(directory, 0555);
    left_ = snapshot(left().path());
    right_ = snapshot(right().path());
    start();
  }
  void move(const std::string& dialog) {
    press(XK_F6);
    expectText(dialog);
    press(XK_Return);
  }
  // The box names what can't be moved; the move goes on without it.
  void skip(const std::string& source) {
    expectText(Denied);
    expectText(source);
    type("s");
    expectNoText(source);
  }
  void expectAllKept() {
    expectNoText("Moving");
    EXPECT_EQ(quit(), 0);
    EXPECT_EQ(snapshot(left().path()), left_);
    EXPECT_EQ(snapshot(right().path()), right_);
  }

 private:
  std::map<std::string, std::string> left_, right_;
};

TEST_F(RefusedMove, OutOfAReadOnlyDirectoryTheOldTargetStays) {
  startWithout(".");
  moveTo("a");
  move("Move/Rename \"a\" to");
  expectText(ExistsQuestion);
  press(XK_Return);
  skip(left().path("a"));
  expectAllKept();
}

TEST_F(RefusedMove, WithAllEveryOldTargetStays) {
  startWithout(".");
  moveTo("a");
  press(XK_Insert);
  expectCursorOn("b");
  press(XK_Insert);
  expectText("2 selected files");
  move("Move 2 files to");
  expectText(ExistsQuestion);
  type("a");
  skip(left().path("a"));
  skip(left().path("b"));
  expectAllKept();
}

TEST_F(RefusedMove, ADirectoryInAMergeDoesNotCostTheFileInItsPlace) {
  left().makeDir("tree");
  left().makeDir("tree/name");
  left().write("tree/name/inside", "new");
  right().makeDir("tree");
  right().write("tree/name", "old");
  startWithout("tree");
  moveTo("tree");
  move("Move/Rename \"tree\" to");
  expectText(ExistsQuestion);
  press(XK_Return);
  skip(left().path("tree/name"));
  expectAllKept();
}

TEST_F(RefusedMove, AReadOnlyTargetStaysAsWell) {
  right().chmod("a", 0444);
  startWithout(".");
  moveTo("a");
  move("Move/Rename \"a\" to");
  expectText(ExistsQuestion);
  press(XK_Return);
  skip(left().path("a"));
  expectAllKept();
}

// Two files that a mask gives one name, and one before them whose target is an old file.
class OneName : public ProgramTest {
 protected:
  void SetUp() override {
    ProgramTest::SetUp();
    left().write("0.x", "new 0");
    left().write("a.x", "x");
    left().write("a.y", "y");
    right().write("0.new", "old 0");
  }

  // Copies all three and answers for the old file, and for the name that is given twice.
  void copyAll(const std::string& first, const std::string& second) {
    start();
    press(XK_Home);
    press(XK_Down);
    expectCursorOn("0.x");
    for (int i = 0; i < 3; ++i) press(XK_Insert);
    expectText("3 selected files");
    press(XK_F5);
    expectText("Copy 3 files to");
    type(right().path("*.new"));
    press(XK_Return);
    expectText(ExistsQuestion);
    expectText(right().path("0.new"));
    type(first);
    expectNoText(right().path("0.new"));
    expectText(ExistsQuestion);
    expectText(right().path("a.new"));
    EXPECT_EQ(right().read("a.new"), "x");
    type(second);
    expectNoText(ExistsQuestion);
    expectNoText("Copying");
    EXPECT_EQ(quit(), 0);
    EXPECT_EQ(right().names(), (std::vector<std::string>{"0.new", "a.new"}));
    EXPECT_EQ(left().read("a.x") + left().read("a.y"), "xy");
  }
};

TEST_F(OneName, TheSecondFileAsksThoughAllWasAnswered) {
  copyAll("a", "s");
  EXPECT_EQ(right().read("0.new"), "new 0");
  EXPECT_EQ(right().read("a.new"), "x");
}

TEST_F(OneName, TheSecondFileAsksThoughNoneWasAnswered) {
  copyAll("e", "\n");
  EXPECT_EQ(right().read("0.new"), "old 0");
  EXPECT_EQ(right().read("a.new"), "y");
}

}  // namespace
