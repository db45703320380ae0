#include "archive/sample_archives.h"
#include "e2e/program_test.h"

namespace {

class Archives : public ProgramTest {
 protected:
  void SetUp() override {
    ProgramTest::SetUp();
    left().write("pack.zip", zipArchive({{"one.txt", "text"}, {"deep/er/two.txt", "more"}}));
  }
};

TEST_F(Archives, EnterGoesIntoAnArchiveAndTheParentEntryOutOfIt) {
  start();
  moveTo("pack.zip");
  press(XK_Return);
  expectText("one.txt");
  moveTo("deep");
  press(XK_Return);
  expectText("er");
  press(XK_Page_Up, {XK_Control_L});
  expectCursorOn("deep");
  press(XK_Page_Up, {XK_Control_L});
  expectCursorOn("pack.zip");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Archives, CtrlPageDownGoesIntoAnArchiveOfAnyName) {
  left().write("unnamed", tarArchive({{"inside", "x"}}, HeaderForm::Published));
  start();
  moveTo("unnamed");
  press(XK_Page_Down, {XK_Control_L});
  expectText("inside");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Archives, TheInfoPanelTellsFormatAndSizes) {
  start();
  moveTo("pack.zip");
  press(XK_Return);
  expectText("one.txt");
  press(XK_l, {XK_Control_L});
  expectText("Type    : ZIP");
  expectText("8 total uncompressed");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Archives, AChangedArchiveIsReadAgainWithThePanel) {
  start();
  moveTo("pack.zip");
  press(XK_Return);
  expectText("one.txt");
  left().write("pack.zip", zipArchive({{"deep/er/two.txt", "more"}, {"later.txt", "new"}}));
  moveTo("deep");
  press(XK_Return);
  expectText("er");
  press(XK_Page_Up, {XK_Control_L});
  expectText("later.txt");
  expectNoText("one.txt");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Archives, ADirectoryThatAChangedArchiveHoldsNoMoreIsLeft) {
  start();
  moveTo("pack.zip");
  press(XK_Return);
  expectText("one.txt");
  moveTo("deep");
  press(XK_Return);
  moveTo("er");
  press(XK_Return);
  expectText("two.txt");
  left().write("pack.zip", zipArchive({{"deep/other.txt", "text"}}));
  press(XK_r, {XK_Control_L});
  expectText("other.txt");
  expectCursorOn("..");
  press(XK_Page_Up, {XK_Control_L});
  expectCursorOn("deep");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Archives, WhatIsWrongWithAnArchiveIsTold) {
  left().write("cut.zip", std::string("PK\3\4 and nothing more"));
  start();
  moveTo("cut.zip");
  press(XK_Return);
  expectText("Central directory not found in");
  expectText("cut.zip");
  press(XK_Return);
  expectNoText("Central directory");
  expectCursorOn("cut.zip");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Archives, WhatIsWrongIsToldOnceHoweverTheArchiveWasToBeEntered) {
  left().write("cut.zip", std::string("PK\3\4 and nothing more"));
  start();
  moveTo("cut.zip");
  const auto expectOneBox = [&] {
    expectText("Central directory not found in");
    press(XK_Return);
    expectNoText("Central directory");
    expectAwaited();
    EXPECT_FALSE(shows("Central directory") || shows("Invalid")) << screen();
  };
  press(XK_Page_Down, {XK_Control_L});
  expectOneBox();
  type("cd cut.zip\n");
  expectOneBox();
  type("cd cut.zip/inner\n");
  expectOneBox();
  expectCursorOn("cut.zip");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Archives, NamesThatClimbAreCountedAndNotShown) {
  left().write("evil.zip", zipArchive({{"../outside", ""}, {"good", ""}, {"a/../../b", ""}}));
  start();
  moveTo("evil.zip");
  press(XK_Return);
  expectText("Some names can't be shown: 2");
  press(XK_Return);
  expectText("good");
  expectNoText("outside");
  EXPECT_EQ(quit(), 0);
}

// Archives of the real packers, changed by their real tools.
class RealArchives : public Archives, public testing::WithParamInterface<const char*> {
 protected:
  void SetUp() override {
    Archives::SetUp();
    left().makeDir("dir");
    left().write("dir/inside", "in");
    left().write("moved", "m");
    left().write("doomed", "d");
    left().write("kept", "k");
    const std::string command = "cd '" + left().path() + "' && " + GetParam() +
                                " dir moved doomed kept && rm -r dir moved doomed kept";
    ASSERT_EQ(system(command.c_str()), 0);
  }
  static std::string archive() {
    return std::string("real.") + std::string(GetParam()).substr(0, 3);
  }
};

TEST_P(RealArchives, F5TakesOutF6MovesOutAndF8Deletes) {
  start();
  moveTo(archive());
  press(XK_Page_Down, {XK_Control_L});
  expectText("doomed");
  moveTo("dir");
  press(XK_F5);
  expectText("Extract \"dir\" to");
  press(XK_Return);
  expectSoon("the directory is there", [&] { return right().read("dir/inside") == "in"; });
  moveTo("moved");
  press(XK_F6);
  expectText("Extract and Move \"moved\" to");
  press(XK_Return);
  expectSoon("the file is there", [&] { return right().read("moved") == "m"; });
  moveTo("doomed");
  press(XK_F8);
  expectText("Do you wish to delete");
  press(XK_Return);
  expectNoText("doomed");
  expectAwaited();
  expectCursorOn("kept");
  EXPECT_EQ(right().names(), (std::vector<std::string>{"dir", "moved"}));
  EXPECT_EQ(quit(), 0);
}

INSTANTIATE_TEST_SUITE_P(Tools, RealArchives,
                         testing::Values("zip -qr real.zip", "tar cf real.tar"),
                         [](const testing::TestParamInfo<const char*>& command) {
                           return std::string(command.param).substr(0, 3);
                         });

}  // namespace
