// File Find, replacing in what it found and Directory Compare in the whole program.

#include "console/console.h"
#include "e2e/program_test.h"
#include "support/files.h"

namespace {

class Find : public ProgramTest {
 protected:
  // Three files in left(): big.txt and one.txt, which hold a text, and sub/two.txt.
  void startWith(const std::string& options) {
    left().makeDir("sub");
    left().write("big.txt", std::string(100, '\n') + "the needle\n");
    left().write("one.txt", "needle and Needle\n");
    left().write("sub/two.txt", "nothing\n");
    home().makeDir(".tdx");
    home().write(".tdx/td.ini", "FFRootSearch=off\n" + options);
    start();
  }
  // Leaves the cursor on the first result, by name.
  void search(const std::string& files, const std::string& text, const std::string& summary) {
    press(XK_F7, Alt);
    expectText("File(s) to find:");
    type(files);
    if (!text.empty()) {
      press(XK_t, Alt);
      type(text);
    }
    press(XK_Return);
    expectText("Search Complete: " + summary);
    press(XK_F3, Ctrl);
    press(XK_Home);
  }
  void leave() {
    press(XK_Escape);
    expectNoText("File(s) to find:");
  }
  bool isListed(const std::string& name) const { return shows(left().path(name)); }
};

TEST_F(Find, ResultsLeadToTheirPlacesAndStayForLater) {
  startWith("");
  search("*.txt", "", "3 matches use ");
  EXPECT_TRUE(isListed("big.txt") && isListed("one.txt") && isListed("sub/two.txt")) << screen();
  press(XK_Down);
  leave();
  press(XK_F7, Alt);
  expectText("File(s) to find:");
  expectAwaited();
  EXPECT_FALSE(shows(left().path() + "/")) << screen();
  leave();
  press(XK_F7, ShiftAlt);
  expectText(left().path("sub/two.txt"));
  press(XK_Down);
  press(XK_Return);
  expectNoText("File(s) to find:");
  expectCursorOn("two.txt");
  expectText(left().path("sub") + ">");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Find, OnALargeScreenTheListHasTheRows) {
  startWith("Columns=132\nLines=50\n");
  search("*.txt", "", "3 matches use ");
  const auto textAt = [this](int x, int y, const std::string& text) {
    EXPECT_EQ(row(3 + x, 3 + y, static_cast<int>(text.size())), text) << screen();
  };
  textAt(1, 32, "Search Complete: 3 matches use ");
  textAt(1, 35, "File(s) to find:");
  textAt(39, 35, "Containing:");
  textAt(1, 36, "*.txt ");
  textAt(1, 38, "[ ]  Start at Root");
  textAt(1, 39, "[X]  Scan subdirectories");
  textAt(1, 40, "[ ]  Drives:");
  textAt(39, 38, "[ ]  Case sensitive");
  textAt(39, 39, "[ ]  Whole Word");
  textAt(7, 42, "[ Find ]  [ Cancel ]  [ Help ]  [ GoTo ]  [ View ]  [ Edit ]");
  leave();
  EXPECT_EQ(quit(), 0);
}

TEST_F(Find, TheViewerAndTheEditorKnowTheText) {
  startWith("");
  search("*.txt", "needle", "2 matches use ");
  press(XK_F3);
  expectText("View: " + left().path("big.txt"));
  expectText("the needle");
  press(XK_Escape);
  expectText("Search Complete:");
  press(XK_Down);
  press(XK_F4);
  expectText("Edit: " + left().path("one.txt"));
  press(XK_F7, Shift);
  expectText("Col 12 ");
  press(XK_Home);
  type("a longer ");
  press(XK_F2);
  expectSoon("the saved file",
             [this] { return left().read("one.txt") == "a longer needle and Needle\n"; });
  press(XK_Escape);
  expectText("Search Complete: 2 matches use 138 bytes");
  EXPECT_NE(row(4).find("27 "), std::string::npos) << "the row has the new size\n" << screen();
  leave();
  EXPECT_EQ(quit(), 0);
}

TEST_F(Find, AConfiguredViewerIsRunForAResult) {
  startWith("Viewer=cp -t " + right().path() + "\n");
  search("two*", "", "1 match uses 8 bytes");
  press(XK_F3);
  expectSoon("the copy", [this] { return right().read("two.txt") == "nothing\n"; });
  expectText("Search Complete: 1 match uses 8 bytes");
  press(XK_F3, Alt);  // without the association and the first viewer
  expectText("View: " + left().path("sub/two.txt"));
  press(XK_Escape);
  expectText("Search Complete:");
  leave();
  EXPECT_EQ(quit(), 0);
}

TEST_F(Find, AllResultsAreMovedToTheOtherPanel) {
  startWith("");
  search("*.txt", "", "3 matches use ");
  press(XK_F6);
  expectText("Move 3 files to");
  press(XK_Return);
  expectText("Search Complete: 0 matches use 0 bytes");
  leave();
  EXPECT_EQ(right().names(), (std::vector<std::string>{"big.txt", "one.txt", "two.txt"}));
  EXPECT_EQ(left().names(), std::vector<std::string>{"sub"});
  expectSoon("the panel as it is now", [this] { return shows("two.txt") && !isListed("one.txt"); });
  EXPECT_EQ(quit(), 0);
}

TEST_F(Find, ResultsAreDeletedOrOnlyTakenOffTheList) {
  startWith("");
  search("*.txt", "", "3 matches use ");
  press(XK_Delete);
  expectText("2 matches use ");
  press(XK_F8);
  expectText("Do you wish to delete");
  EXPECT_TRUE(isListed("one.txt"));
  press(XK_Escape);
  expectNoText("Do you wish to delete");
  EXPECT_TRUE(left().exists("one.txt"));
  press(XK_F8);
  expectText("Do you wish to delete");
  press(XK_Return);
  expectText("1 match uses 8 bytes");
  EXPECT_FALSE(left().exists("one.txt"));
  press(XK_F8, Shift);
  expectText("Are you sure you wish to delete");
  press(XK_Return);
  expectText("0 matches use 0 bytes");
  leave();
  EXPECT_TRUE(left().exists("big.txt")) << "off the list, not off the disk";
  EXPECT_FALSE(left().exists("sub/two.txt"));
  EXPECT_EQ(quit(), 0);
}

TEST_F(Find, DelInAFieldDeletesACharacter) {
  startWith("");
  search("*.txt", "", "3 matches use ");
  press(XK_i, Alt);
  press(XK_Home);
  press(XK_Delete);
  expectSoon("the shorter text", [this] { return row(3, 14, 7) == " .txt  "; });
  expectText("3 matches use ");
  leave();
  EXPECT_EQ(quit(), 0);
}

TEST_F(Find, TheTextIsReplacedInAllResults) {
  startWith("");
  search("*.txt", "needle", "2 matches use ");
  press(XK_r, Ctrl);
  expectText("Replace with:");
  type("pin");
  press(XK_Return);
  expectText("Are you sure you want to replace");
  expectText("in 2 files");
  press(XK_Return);
  expectText("Replaced 3 occurances in 2 files");
  press(XK_Return);
  expectNoText("Replaced 3");
  leave();
  EXPECT_EQ(left().read("one.txt"), "pin and pin\n");
  EXPECT_EQ(left().read("big.txt"), std::string(100, '\n') + "the pin\n");
  EXPECT_EQ(left().names(), (std::vector<std::string>{"big.txt", "one.txt", "sub"}));
  EXPECT_EQ(quit(), 0);
}

class Compare : public ProgramTest {
 protected:
  void SetUp() override {
    ProgramTest::SetUp();
    left().write("both", "same");
    right().write("both", "same");
    left().write("differs", "old");
    right().write("differs", "new");
    left().write("only left", "");
    right().write("only right", "");
    for (const char* name : {"both", "differs"}) {
      setTime(left().path(name), 1600000000);
      setTime(right().path(name), 1600000000);
    }
  }
  void startWith(const std::string& options) {
    home().makeDir(".tdx");
    home().write(".tdx/td.ini", "CMPTime=0\nCMPUnmatched=off\n" + options);
    start();
  }
};

TEST_F(Compare, WhatDiffersIsTaggedAndCanBeCopied) {
  startWith("");
  press(XK_k, Ctrl);
  expectText("Directory Compare");
  press(XK_Tab);
  press(XK_Tab);
  press(XK_Down);
  press(XK_space);  // the contents
  press(XK_Return);
  expectNoText("Directory Compare");
  expectText("3 bytes in 1 selected file");
  press(XK_F5);
  expectText("Copy 1 file");
  press(XK_Return);
  expectText("File already exists, Overwrite?");
  press(XK_Return);
  expectSoon("the copy", [this] { return right().read("differs") == "old"; });
  EXPECT_EQ(quit(), 0);
}

TEST_F(Compare, WithoutARuleNothingIsTagged) {
  startWith("");
  press(XK_k, Ctrl);
  expectText("Directory Compare");
  press(XK_Return);
  expectText("No files meet the specified conditions");
  press(XK_Return);
  expectNoText("No files meet");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Compare, EscWhileContentsAreReadClearsAllTags) {
  for (const TempDir* directory : {&left(), &right()}) {
    directory->write("large", "");
    // Without blocks on the disk, and still long enough to be read.
    ASSERT_EQ(truncate(directory->path("large").c_str(), int64_t{1} << 38), 0);
  }
  startWith("CMPContents=on\nCMPUnmatched=on\n");
  press(XK_k, Ctrl);
  expectText("Directory Compare");
  press(XK_Return);
  expectText("Comparing");
  expectText("║ large");
  pressMeanwhile(XK_Escape);
  expectNoText("Comparing");
  expectAwaited();
  EXPECT_FALSE(shows("selected")) << screen();
  EXPECT_EQ(quit(), 0);
}

}  // namespace
