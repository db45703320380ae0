#include <atomic>
#include <sstream>

#include "e2e/program_test.h"
#include "foundation/system.h"

namespace {

class TreeKeys : public ProgramTest {
 protected:
  void TearDown() override {
    System::setHook(nullptr, nullptr);
    ProgramTest::TearDown();
  }

  // A tree file that knows these directories and what lies above them; all in one directory.
  void saveTree(const std::string& above, const std::vector<std::string>& names) const {
    std::string lines = "0/\n";
    char level = '1';
    std::istringstream parts(above.substr(1));
    for (std::string part; std::getline(parts, part, '/'); ++level) lines += level + part + "\n";
    for (const std::string& name : names) lines += level + name + "\n";
    home().makeDir(".tdx");
    home().write(".tdx/tdtree.dat", std::string(8, '\0') + lines);
  }
  bool savedTreeHolds(const std::string& name) const {
    return home().exists(".tdx/tdtree.dat") &&
           home().read(".tdx/tdtree.dat").find(name + "\n") != std::string::npos;
  }
};

TEST_F(TreeKeys, ADirectoryPickedInTheTreeWindowBecomesThePanels) {
  left().makeDir("target");
  left().write("target/inside", "");
  saveTree(left().path(), {"other", "target"});
  start();
  press(XK_F10, {XK_Alt_L});
  expectText("Directory Tree");
  type("targ");
  expectText("Search: targ");
  press(XK_Return);
  expectNoText("Directory Tree");
  expectText("inside");
  EXPECT_EQ(quit(), 0);
}

TEST_F(TreeKeys, EscInAScanGivesThePanelsBackAndWritesNothing) {
  start();
  // A disk on which each directory takes its time.
  System::setHook(
      [](const char* call, const char*, void*) {
        if (std::string(call) == "readNames") usleep(2000);
        return 0;
      },
      nullptr);
  press(XK_F10, {XK_Alt_L});
  expectText("Scanning directories");
  pressMeanwhile(XK_Escape);
  expectNoText("Scanning directories");
  EXPECT_FALSE(shows("Directory Tree"));
  EXPECT_FALSE(home().exists(".tdx/tdtree.dat"));
  EXPECT_EQ(quit(), 0);
  EXPECT_FALSE(home().exists(".tdx/tdtree.dat"));
}

// Of the disk a scan sees the way to one directory and what is in it; slowly, when that is wanted.
struct SeenDisk {
  explicit SeenDisk(std::string path) : only(std::move(path)) { System::setHook(decide, this); }
  ~SeenDisk() { System::setHook(nullptr, nullptr); }
  SeenDisk(const SeenDisk&) = delete;
  SeenDisk& operator=(const SeenDisk&) = delete;

  static int decide(const char* call, const char* path, void* self) {
    const SeenDisk& disk = *static_cast<SeenDisk*>(self);
    const std::string name = call;
    if (name == "readNames" && disk.slow) usleep(100'000);
    if (name != "openAt" || path[0] != '/') return 0;
    const std::string asked = path;
    const bool above = asked == "/" || (disk.only + "/").starts_with(asked + "/");
    return above || asked.find("/.tdx") != std::string::npos || asked.starts_with(disk.only + "/")
               ? 0
               : EACCES;
  }
  std::string only;
  std::atomic<bool> slow{true};
};

TEST_F(TreeKeys, AScanThatWasEndedIsMadeWhenTheTreeIsAskedForAgain) {
  left().makeDir("found");
  left().makeDir("found/deep");
  start();
  SeenDisk disk(left().path());
  press(XK_F10, {XK_Alt_L});
  expectText("Scanning directories");
  press(XK_Escape);
  expectNoText("Scanning directories");
  disk.slow = false;
  press(XK_F10, {XK_Alt_L});
  expectText("Directory Tree");
  type("deep");
  press(XK_Return);
  expectText(left().path("found/deep"));
  EXPECT_TRUE(savedTreeHolds("deep"));
  press(XK_F10, {XK_Alt_L});
  expectText("Directory Tree");
  disk.slow = true;
  press(XK_r, {XK_Control_L});
  expectText("Scanning directories");
  press(XK_Escape);
  expectNoText("Scanning directories");
  expectNoText("Directory Tree");
  EXPECT_TRUE(savedTreeHolds("deep")) << "the file of before";
  press(XK_F10, {XK_Alt_L});
  expectText("Search:");
  EXPECT_FALSE(shows("Scanning"));
  press(XK_Escape);
  expectNoText("Directory Tree");
  EXPECT_EQ(quit(), 0);
}

TEST_F(TreeKeys, DirectoriesThatCommandsMakeAndDeleteComeAndGoInTheTree) {
  saveTree(left().path(), {});
  start();
  press(XK_F7);
  expectText("Create the directory");
  type("fresh");
  press(XK_Return);
  expectCursorOn("fresh");
  expectSoon("the new directory in the file", [this] { return savedTreeHolds("fresh"); });
  press(XK_F8);
  expectText("Do you wish to delete");
  press(XK_Return);
  expectSoon("the directory to go", [this] { return !left().exists("fresh"); });
  expectSoon("and from the file", [this] { return !savedTreeHolds("fresh"); });
  EXPECT_EQ(quit(), 0);
}

TEST_F(TreeKeys, WhatAPanelReadsIsInTheFileSoonAndAtTheEnd) {
  left().makeDir("unknown");
  saveTree(left().path(), {"gone"});
  start();
  expectSoon("the file to follow", [this] { return savedTreeHolds("unknown"); });
  EXPECT_FALSE(savedTreeHolds("gone"));
  left().makeDir("late");
  press(XK_r, {XK_Control_L});
  expectText("late");
  EXPECT_EQ(quit(), 0);
  EXPECT_TRUE(savedTreeHolds("late"));
}

TEST_F(TreeKeys, EnterInATreePanelSendsTheOtherPanelThere) {
  left().makeDir("target");
  left().write("target/inside", "");
  saveTree(left().path(), {"target"});
  start();
  press(XK_Tab);
  press(XK_F9);
  expectText("Commands");
  press(XK_Return);
  press(XK_t);
  expectText(" TREE ");
  press(XK_t, {XK_Alt_L});
  press(XK_a, {XK_Alt_L});
  press(XK_r, {XK_Alt_L});
  expectText("Search: tar");
  press(XK_Return);
  expectText("inside");
  EXPECT_EQ(quit(), 0);
}

TEST_F(TreeKeys, CdGoesToADirectoryThatTheTreeKnowsByItsName) {
  left().makeDir("faraway");
  left().write("faraway/inside", "");
  saveTree(left().path(), {"faraway"});
  start();
  press(XK_Tab);
  type("cd faraway");
  press(XK_Return);
  expectText("inside");
  type("cd nowhere-at-all");
  press(XK_Return);
  expectText("Invalid directory");
  press(XK_Return);
  EXPECT_EQ(quit(), 0);
}

TEST_F(TreeKeys, CtrlQAndF3CountADirectory) {
  left().makeDir("counted");
  left().write("counted/file", std::string(4321, 'x'));
  left().makeDir("seen");
  left().write("seen/file", std::string(1234, 'x'));
  start();
  moveTo("counted");
  press(XK_q, {XK_Control_L});
  expectText("4321");
  moveTo("seen");
  press(XK_F3);
  expectText("1234");
  EXPECT_EQ(quit(), 0);
}

TEST_F(TreeKeys, TheTreeButtonOfTheCopyDialogFillsTheField) {
  left().write("file", "content");
  right().makeDir("deep");
  saveTree(right().path(), {"deep"});
  start();
  moveTo("file");
  press(XK_F5);
  expectText("Copy \"file\" to");
  press(XK_F10);
  expectText("Directory Tree");
  type("deep");
  press(XK_Return);
  expectText(right().path("deep"));
  press(XK_Return);
  expectSoon("the copy", [this] { return right().exists("deep/file"); });
  EXPECT_EQ(quit(), 0);
}

}  // namespace
