#include "e2e/program_test.h"

namespace {

class Prompt : public ProgramTest {};

TEST_F(Prompt, CdChangesTheDirectoryOfTheActivePanel) {
  left().makeDir("place");
  left().write("place/inside", "");
  start();
  type("cd place");
  expectText(">cd place");
  press(XK_Return);
  expectText("inside");
  expectNoText(">cd place");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Prompt, CdToNowhereSaysInvalidDirectory) {
  start();
  type("cd /nowhere");
  press(XK_Return);
  expectText("Invalid directory");
  expectText("/nowhere");
  press(XK_Return);
  expectNoText("Invalid directory");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Prompt, CdDotDotGoesUp) {
  left().makeDir("sub");
  start();
  moveTo("sub");
  press(XK_Return);
  expectSoon("the path of sub", [this] { return row(23).find("/sub>") != std::string::npos; });
  type("cd..");
  press(XK_Return);
  expectSoon("the path above", [this] { return row(23).find("/sub>") == std::string::npos; });
  EXPECT_EQ(quit(), 0);
}

TEST_F(Prompt, ANameIsInsertedQuotedAndCdReadsItBack) {
  left().makeDir("with blank");
  left().write("with blank/inside", "");
  start();
  moveTo("with blank");
  type("cd ");
  press(XK_Home, {XK_Control_L});
  press(XK_Return, {XK_Control_L});
  expectText("with\\ blankcd ");
  EXPECT_EQ(quit(), 0);
}

TEST_F(Prompt, HistoryComesBackWithCtrlE) {
  left().makeDir("sub");
  start();
  type("cd sub");
  press(XK_Return);
  expectNoText(">cd sub");
  press(XK_e, {XK_Control_L});
  expectText(">cd sub");
  EXPECT_EQ(quit(), 0);
}

}  // namespace
