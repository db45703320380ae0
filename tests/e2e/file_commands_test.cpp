#include "e2e/program_test.h"

namespace {

class FileCommands : public ProgramTest {};

TEST_F(FileCommands, F5CopiesTheFileUnderTheCursorToTheOtherPanel) {
  left().write("notes.txt", "some text");
  start();
  moveTo("notes.txt");
  press(XK_F5);
  expectText("Copy \"notes.txt\" to");
  press(XK_Return);
  expectSoon("the copy", [this] { return right().read("notes.txt") == "some text"; });
  expectNoText("Copy \"notes.txt\" to");
  EXPECT_EQ(left().read("notes.txt"), "some text");
  EXPECT_EQ(quit(), 0);
}

TEST_F(FileCommands, F6MovesTaggedFiles) {
  left().write("one", "1");
  left().write("three", "3");
  left().write("two", "2");
  start();
  moveTo("one");
  press(XK_Insert);
  expectCursorOn("three");
  press(XK_Insert);
  expectText("2 selected files");
  press(XK_F6);
  expectText("Move 2 files to");
  press(XK_Return);
  expectSoon("the move", [this] {
    return right().names() == std::vector<std::string>{"one", "three"};
  });
  expectSoon("the sources gone",
             [this] { return left().names() == std::vector<std::string>{"two"}; });
  EXPECT_EQ(right().read("three"), "3");
  EXPECT_EQ(quit(), 0);
}

TEST_F(FileCommands, F7MakesADirectoryAndPutsTheCursorOnIt) {
  left().write("zebra", "");
  start();
  press(XK_F7);
  expectText("Create the directory");
  type("new place");
  press(XK_Return);
  expectSoon("the directory", [this] { return left().exists("new place"); });
  expectCursorOn("new place");
  EXPECT_EQ(quit(), 0);
}

TEST_F(FileCommands, F8AsksAndDeletes) {
  left().write("doomed", "x");
  start();
  moveTo("doomed");
  press(XK_F8);
  expectText("Do you wish to delete");
  press(XK_Return);
  expectSoon("the file gone", [this] { return !left().exists("doomed"); });
  EXPECT_EQ(quit(), 0);
}

TEST_F(FileCommands, EscapeAtTheDeleteQuestionLeavesTheFile) {
  left().write("kept", "x");
  start();
  moveTo("kept");
  press(XK_F8);
  expectText("Do you wish to delete");
  press(XK_Escape);
  expectNoText("Do you wish to delete");
  EXPECT_EQ(quit(), 0);
  EXPECT_TRUE(left().exists("kept"));
}

TEST_F(FileCommands, ADirectoryThatIsNotEmptyGoesOnlyWhenTheWordIsTyped) {
  left().makeDir("full");
  left().write("full/inside", "x");
  start();
  moveTo("full");
  press(XK_F8);
  expectText("Do you wish to delete");
  press(XK_Return);
  expectText("Delete tree?");
  type("no");
  press(XK_Return);
  expectNoText("Delete tree?");
  EXPECT_TRUE(left().exists("full/inside"));
  press(XK_F8);
  expectText("Do you wish to delete");
  press(XK_Return);
  expectText("Delete tree?");
  type("yes");
  press(XK_Return);
  expectSoon("the tree gone", [this] { return !left().exists("full"); });
  EXPECT_EQ(quit(), 0);
}

TEST_F(FileCommands, ShiftF6RenamesUnderATypedName) {
  left().write("before", "x");
  start();
  moveTo("before");
  press(XK_F6, {XK_Shift_L});
  expectText("\"before\" to");
  type("after");
  press(XK_Return);
  expectSoon("the new name",
             [this] { return left().names() == std::vector<std::string>{"after"}; });
  expectCursorOn("after");
  EXPECT_EQ(quit(), 0);
}

TEST_F(FileCommands, CopyingOntoAnExistingFileAsksAndSkipLeavesIt) {
  left().write("same", "new");
  right().write("same", "old");
  start();
  moveTo("same");
  press(XK_F5);
  expectText("Copy \"same\" to");
  press(XK_Return);
  expectText("File already exists, Overwrite?");
  type("s");
  expectNoText("File already exists");
  EXPECT_EQ(right().read("same"), "old");
  press(XK_F5);
  expectText("Copy \"same\" to");
  press(XK_Return);
  expectText("File already exists, Overwrite?");
  press(XK_Return);
  expectSoon("the new content", [this] { return right().read("same") == "new"; });
  EXPECT_EQ(quit(), 0);
}

TEST_F(FileCommands, ATreeIsCopiedWhole) {
  left().makeDir("tree");
  left().makeDir("tree/branch");
  left().write("tree/branch/leaf", "green");
  left().link("branch/leaf", "tree/link");
  start();
  moveTo("tree");
  press(XK_F5);
  expectText("Copy \"tree\" to");
  press(XK_Return);
  expectSoon("the leaf", [this] { return right().read("tree/branch/leaf") == "green"; });
  expectSoon("what the link names", [this] { return right().read("tree/link") == "green"; });
  EXPECT_EQ(quit(), 0);
}

TEST_F(FileCommands, CtrlAAndThreeDigitsSetThePermissionsOfTaggedFiles) {
  for (const char* name : {"one", "three", "two"}) {
    left().write(name, "x");
    left().chmod(name, 0600);
  }
  start();
  moveTo("one");
  press(XK_Insert);
  press(XK_Insert);
  expectText("2 selected files");
  press(XK_a, {XK_Control_L});
  expectText("File  Attributes");
  type("754");
  press(XK_Return);
  expectNoText("File  Attributes");
  EXPECT_EQ(left().mode("one"), 0754U);
  EXPECT_EQ(left().mode("three"), 0754U);
  EXPECT_EQ(left().mode("two"), 0600U);
  EXPECT_EQ(quit(), 0);
}

TEST_F(FileCommands, CtrlCChangesTheCaseOfANameAndTheDateItemItsDate) {
  left().write("Some.File", "x");
  start();
  moveTo("Some.File");
  press(XK_c, {XK_Control_L});
  expectText("Change case of");
  press(XK_Return);
  expectSoon("the new name", [this] { return left().exists("some.file"); });
  expectCursorOn("some.file");
  press(XK_F9);
  type("f");
  type("t");
  expectText("Change date of");
  press(XK_Escape);
  expectNoText("Change date of");
  EXPECT_EQ(quit(), 0);
}

TEST_F(FileCommands, CtrlShiftF5MakesALinkInTheOtherPanel) {
  left().write("file", "content");
  start();
  moveTo("file");
  press(XK_F5, {XK_Control_L, XK_Shift_L});
  expectText("Make symbolic link to file as");
  press(XK_Return);
  expectSoon("the link", [this] { return right().read("file") == "content"; });
  std::error_code error;
  EXPECT_EQ(std::filesystem::read_symlink(right().path("file"), error).string(),
            left().path("file"));
  EXPECT_EQ(quit(), 0);
}

}  // namespace
